#include "ovxmllib/binding/SerializationContext.h"

#include <memory>

#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/collections/AttributeCol.h"
#include "ovxmllib/fastinfoset/FastInfosetContext.h"
#include "ovxmllib/json/JsonContext.h"

namespace OvXmlLib16 {

CSerializationContext CSerializationContext::m_defaultContext;

CSerializationContext::RootAttributes::RootAttributes(const RootAttributes& other)
    : m_made(other.m_made.load(std::memory_order_acquire)) {
  if (CAttributeCol* const shared = m_made) shared->AddRef();
}

CSerializationContext::RootAttributes& CSerializationContext::RootAttributes::operator=(const RootAttributes& other) {
  RootAttributes copy(other);
  copy.m_made = m_made.exchange(copy.m_made);
  return *this;
}

CSerializationContext::RootAttributes::~RootAttributes() {
  if (CAttributeCol* const made = m_made) made->Release();
}

template <class T>
CSerializationContext::MadeOnFirstUse<T>::MadeOnFirstUse(const MadeOnFirstUse& other) {
  if (const T* made = other.m_made.load(std::memory_order_acquire)) m_made = new T(*made);
}

template <class T>
CSerializationContext::MadeOnFirstUse<T>& CSerializationContext::MadeOnFirstUse<T>::operator=(
    const MadeOnFirstUse& other) {
  if (this == &other) return *this;
  const T* made = other.m_made.load(std::memory_order_acquire);
  if (made != nullptr || m_made != nullptr) *Get() = made == nullptr ? T() : *made;
  return *this;
}

template <class T>
void CSerializationContext::MadeOnFirstUse<T>::Drop() noexcept {
  delete m_made.load(std::memory_order_relaxed);
}

template <class T>
T* CSerializationContext::MadeOnFirstUse<T>::Get() const {
  T* made = m_made.load(std::memory_order_acquire);
  if (made != nullptr) return made;
  auto mine = std::make_unique<T>();
  // Another thread may be first.
  return m_made.compare_exchange_strong(made, mine.get(), std::memory_order_acq_rel) ? mine.release() : made;
}

template class CSerializationContext::MadeOnFirstUse<CFastInfosetContext>;
template class CSerializationContext::MadeOnFirstUse<CJsonContext>;

CAttributeCol* CSerializationContext::RootAttributes::Get() const {
  CAttributeCol* made = m_made.load(std::memory_order_acquire);
  if (made != nullptr) return made;
  CSmartPtr<CAttributeCol> mine(new CAttributeCol(u"", u"##any", u""));
  if (!m_made.compare_exchange_strong(made, mine, std::memory_order_acq_rel)) return made;  // another thread was first
  mine->AddRef();
  return mine;
}

CSmartPtr<CAttributeCol> CSerializationContext::GetAdditionalRootAttributes() const {
  return m_additionalRootAttributes.Get();
}

void CSerializationContext::SetIgnoreMissingMandatoryElements(bool ignore) {
  if (ignore && m_bIgnoreUnknownElements) {
    throw COvInvalidStateException(
        u"The parser can only ignore additional elements, or ignore the fact that some required ones are missing, "
        u"you can not ignore both\n"
        u"Set IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to true");
  }
  m_bIgnoreMissingMandatoryElements = ignore;
}

void CSerializationContext::SetIgnoreUnknownElements(bool ignore) {
  if (ignore && m_bIgnoreMissingMandatoryElements) {
    throw COvInvalidStateException(
        u"The parser can only ignore additional elements, or ignore the fact that some required ones are missing, "
        u"you can not ignore both\n"
        u"Set IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to true");
  }
  m_bIgnoreUnknownElements = ignore;
}

void CSerializationContext::SetIndentChars(const WChar* text) {
  const WStringView chars = ViewOf(text);
  if (chars.find_first_not_of(u" \t") != WStringView::npos) {
    // Deliberate: the message shows a backslash and a t, not a tab.
    throw COvInvalidParamException(u"IndentChars can only contain Whitespace characters, i.e. \\t or spaces");
  }
  m_strIndentChars = chars;
}

void CSerializationContext::SetUntrustedInput() noexcept {
  constexpr std::uint64_t kMebi = 1024 * 1024;
  m_maxElementDepth = 256;
  m_maxAttributesPerElement = 256;
  m_maxNameLength = 1024;
  m_maxNamespaceLength = 1024;
  m_maxTextLength = 16 * kMebi;
  m_maxInputBytes = 64 * kMebi;
  m_maxDecompressedBytes = 256 * kMebi;
  m_bAllowDoctype = false;
}

}  // namespace OvXmlLib16
