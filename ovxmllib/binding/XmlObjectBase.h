// The root of every bound object, and the entry points that read and write it.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <new>
#include <string_view>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/EventSink.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/binding/SerializationContext.h"
#include "ovxmllib/foundation/CompactText.h"
#include "ovxmllib/foundation/WideString.h"
#include "ovxmllib/values/BinaryData.h"

namespace OvXmlLib16Data {
class CAttributeInfo;
class CElementInfo;
}  // namespace OvXmlLib16Data

namespace OvXmlLib16 {

class CElement;
class CTextStream;
class CXmlDocument;
class CXmlCollectionBase;
class CXmlElement;
class CXmlWriter;

/// Base of all objects that read themselves from documents and write themselves as documents.
///
/// A descendant supplies GetBase, GetTargetNamespace, GetNamespace, ToXml_Int and FromXml_Int. The entry points From...
/// build a document, let it parse the input and hand its tree to FromXml_Int; the entry points To... build a writer and
/// hand it to ToXml_Int. An object can be read several times. After a failed read it is left as far as the read came,
/// and can be read again or destroyed. An override of an operation hides those of the same name that it does not
/// override: inside a descendant, call them as `CXmlObjectBase::FromXml_Int(child, ...)`.
///
/// Life: an object is made with new and with no reference, belongs to the first CSmartPtr that takes it, and is deleted
/// by the last Release. References may be dropped on any thread; all else on an object is for one thread at a time.
/// Different objects may be used on different threads, with one context that nobody changes or with several.
///
/// Objects that are made while a document of a thousand elements or more is read lie in slabs of 64 KiB in the order of
/// their making, which makes them quicker to make and to delete; a slab is free for other use when nothing in it is
/// left. All others lie on the heap. A class that has another base with operators new says by a using declaration which
/// ones it takes, and may take any.
///
/// Before the first use, generated code (or the application) calls Register with the version that the code was made
/// for. Every entry point throws COvException when that is not this library's version, 16.1.
class OVXMLLIB_API CXmlObjectBase : public IEventSink {
 public:
  static void* operator new(std::size_t bytes);
  static void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept;
  static void* operator new(std::size_t bytes, std::align_val_t alignment);
  static void* operator new(std::size_t, void* place) noexcept { return place; }
  static void operator delete(void* object) noexcept;
  static void operator delete(void* object, std::align_val_t alignment) noexcept;
  static void operator delete(void*, void*) noexcept {}

  /// Records the version of the code generator; 0.0 until the first call. Call it at start-up.
  static void Register(int major, int minor) noexcept;

  /// Receives the events of collections that the object listens to. Does nothing here.
  void OnEvent(CXmlObjectBase* source, IEventSink::MsgType type, void* data) override;

  /// This object as a CXmlObjectBase, where a descendant has several bases.
  virtual CXmlObjectBase* GetBase() = 0;

  /// Writes the object as an XML file, in place of one that is there. GZip makes it a gzip file; ZLib throws
  /// COvException before the file is touched. With AsyncToXmlFile(true) and no compression the file is written as the
  /// document is produced, else when it is complete. After a failure on the way the file may be partly written.
  virtual void ToXmlFile(const WChar* file, bool header = true, bool formatted = true,
                         XmlEncoding encoding = XmlEncoding_UTF8, EOLType eol = EOLType_LF,
                         const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                         CompressionType compression = CompressionType_None) const;

  /// Writes the object as a Fast Infoset file, in place of one that is there. GZip makes it a gzip file; ZLib throws
  /// COvException before the file is touched. The file is written when the document is complete.
  virtual void ToFastInfosetFile(const WChar* file, FInfoDecl declaration = FInfoDecl_None,
                                 const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                                 CompressionType compression = CompressionType_None) const;

  /// Writes the object as a JSON file, as ToXmlFile does it with XML; the form is told at CJsonContext. In
  /// RoundTripFull each namespace below the root needs an alias (CSerializationContext::GetNamespaceAliases), or is the
  /// default one.
  virtual void ToJsonFile(const WChar* file, bool formatted = true, XmlEncoding encoding = XmlEncoding_UTF8,
                          EOLType eol = EOLType_LF,
                          const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                          CompressionType compression = CompressionType_None) const;

  /// The object as XML text. `header` puts an XML declaration, without an encoding, ahead; `formatted` puts each
  /// element on a line of its own, indented by the context's IndentChars.
  virtual WString ToXml(bool header = true, bool formatted = true, EOLType eol = EOLType_LF,
                        const CSerializationContext& context = CSerializationContext::GetDefaultContext()) const;

  /// The object as JSON text. `formatted` puts each member on a line of its own, indented by the context's IndentChars.
  virtual WString ToJson(bool formatted = true, EOLType eol = EOLType_LF,
                         const CSerializationContext& context = CSerializationContext::GetDefaultContext()) const;

  /// The object as bytes of an XML document. UTF-16 is little-endian and has no byte order mark here. XmlEncoding_None
  /// throws COvException, and so does the compression of a document so small that it does not shrink.
  virtual CBinaryData ToXmlStream(bool header = true, bool formatted = true, XmlEncoding encoding = XmlEncoding_UTF8,
                                  EOLType eol = EOLType_LF,
                                  const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                                  CompressionType compression = CompressionType_None) const;

  /// The object as a Fast Infoset document (ITU-T Rec. X.891), the binary form of XML: shorter, and quicker to read and
  /// write. `declaration` puts an XML declaration ahead, for readers that look for one. How values are stored is set by
  /// the context's GetFIContext. Read it with FromXmlStream, which knows the format by its first bytes. Throws
  /// COvException for a value that cannot be stored as the context asks for, and for the compression of a document so
  /// small that it does not shrink.
  virtual CBinaryData ToFastInfosetStream(
      FInfoDecl declaration = FInfoDecl_None,
      const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
      CompressionType compression = CompressionType_None) const;

  /// The object as bytes of a JSON document, as ToXmlStream gives those of XML. What is not UTF-8 cannot be read again.
  virtual CBinaryData ToJsonStream(bool formatted = true, XmlEncoding encoding = XmlEncoding_UTF8,
                                   EOLType eol = EOLType_LF,
                                   const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                                   CompressionType compression = CompressionType_None) const;

  /// Reads the object from an XML or Fast Infoset file, plain or compressed; see CXmlDocument::Load.
  virtual void FromXmlFile(const WChar* file,
                           const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from a JSON file in UTF-8, plain or compressed; see CXmlDocument::LoadJsonFile. This and the next
  /// ones throw COvValidationException with path, line and column where the text is no JSON; COvInvalidStateException
  /// where a member cannot be an element or attribute; and COvException "Error converting JSON to XML:", with the XML
  /// that the text stands for and the failure as inner exception, where that XML is not well-formed or does not fit the
  /// object. An object may be read twice on the way to such a failure. The context is not changed: in modes without
  /// namespaces the object is read with a copy of it that ignores them.
  virtual void FromJsonFile(const WChar* file,
                            const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from terminated UTF-16 text. An empty or null text throws COvException.
  virtual void FromXml(const WChar* text,
                       const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from terminated text in the encoding that it declares, UTF-8 by default.
  virtual void FromXml(const char* text,
                       const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from terminated JSON text in UTF-16 or UTF-8. An empty or null text throws COvException.
  virtual void FromJson(const WChar* text,
                        const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  virtual void FromJson(const char* text,
                        const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from the bytes of an XML or Fast Infoset document, plain or compressed. Empty data throw
  /// COvException.
  virtual void FromXmlStream(const CBinaryData& data,
                             const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  virtual void FromXmlStream(const unsigned char* data, std::size_t length,
                             const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from the bytes of a JSON document in UTF-8, plain or compressed. Empty data throw COvException.
  virtual void FromJsonStream(const CBinaryData& data,
                              const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  virtual void FromJsonStream(const unsigned char* data, std::size_t length,
                              const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from a wildcard element, by way of its XML text.
  virtual void FromXmlElement(const CElement* element,
                              const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// Reads the object from an element of a tree that the caller keeps.
  virtual void FromXmlElement(const CXmlElement* element,
                              const CSerializationContext& context = CSerializationContext::GetDefaultContext());

  virtual ~CXmlObjectBase();

 protected:
  /// The namespace that the entry points hand to ToXml_Int.
  virtual WString GetTargetNamespace() const = 0;

 public:
  /// The namespace of the object's elements.
  virtual WString GetNamespace() const = 0;

  /// The same object as a constant.
  const CXmlObjectBase* GetBase() const { return const_cast<CXmlObjectBase*>(this)->GetBase(); }

  /// ToXmlFile, ToFastInfosetFile and FromXmlFile with a path as the standard library writes it.
  void ToXmlFile(const std::filesystem::path& file, bool header = true, bool formatted = true,
                 XmlEncoding encoding = XmlEncoding_UTF8, EOLType eol = EOLType_LF,
                 const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                 CompressionType compression = CompressionType_None) const;
  void ToFastInfosetFile(const std::filesystem::path& file, FInfoDecl declaration = FInfoDecl_None,
                         const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                         CompressionType compression = CompressionType_None) const;
  void FromXmlFile(const std::filesystem::path& file,
                   const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// ToJsonFile and FromJsonFile with such a path.
  void ToJsonFile(const std::filesystem::path& file, bool formatted = true, XmlEncoding encoding = XmlEncoding_UTF8,
                  EOLType eol = EOLType_LF,
                  const CSerializationContext& context = CSerializationContext::GetDefaultContext(),
                  CompressionType compression = CompressionType_None) const;
  void FromJsonFile(const std::filesystem::path& file,
                    const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// There is nothing to read: throws COvInvalidParamException.
  void FromXmlElement(std::nullptr_t,
                      const CSerializationContext& context = CSerializationContext::GetDefaultContext());
  /// FromXml for text that need not be terminated.
  void FromXml(std::string_view text,
               const CSerializationContext& context = CSerializationContext::GetDefaultContext());

  /// FromJson for text that need not be terminated.
  void FromJson(std::string_view text,
                const CSerializationContext& context = CSerializationContext::GetDefaultContext());

  /// Takes a reference; returns the new count.
  long AddRef() noexcept { return m_references.fetch_add(1, std::memory_order_relaxed) + 1L; }
  /// Drops a reference; returns the new count. At 0 the object is deleted.
  long Release() {
    long left = 0;
    // Nobody else can change the only reference, so it goes without a locked operation.
    if (m_references.load(std::memory_order_acquire) == 1) {
      m_references.store(0, std::memory_order_relaxed);
    } else {
      left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1L;
    }
    if (left == 0) delete this;
    return left;
  }

 protected:
  CXmlObjectBase();
  /// A copy has the element name, and references of its own: none.
  CXmlObjectBase(const CXmlObjectBase& other);
  CXmlObjectBase& operator=(const CXmlObjectBase& other);

  /// For the constructor of a class that stands for an element with everything in it, and not for the content of one:
  /// the entry points hand the document element to FromXml_Int as `child`, not its first child.
  void SetReadsOwnElement() noexcept { m_readsOwnElement = true; }

  /// Writes the object's attributes on the start tag that is open on `writer`. Nothing here.
  virtual void AttributesToXml_Int(CXmlWriter* writer, const CSerializationContext& context) const;

  /// Writes the object. `isRoot` is true for the outermost object of a document alone and asks for what belongs on the
  /// document element; `ns` is the namespace of the object's own element; `optionalChoice` tells a choice that it may
  /// stay empty.
  virtual void ToXml_Int(CXmlWriter* writer, bool isRoot, const WChar* ns, const CSerializationContext& context,
                         bool optionalChoice) const = 0;

  /// Fills the object. `parent` is the element whose attributes and text belong to it, `child` the first child element
  /// that nobody has consumed, or null. Returns the next child element not consumed, or null. The tree is not owned and
  /// is gone when the entry point returns.
  virtual CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* child, const CSerializationContext& context,
                                   bool optionalChoice) = 0;

  /// The same operations on another object, with `optionalChoice` false on reading.
  static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                  const CSerializationContext& context);
  static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot, const WChar* ns,
                        const CSerializationContext& context, bool optionalChoice);
  static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* child,
                                  const CSerializationContext& context);

  /// The name of the element that the object stands for; empty for a new object.
  WString GetElementName() const { return m_strElementName.String(); }
  void SetElementName(const WChar* name);
  /// The same without a copy of the name, valid until it is set, and for text that need not be terminated.
  WStringView GetElementNameView() const noexcept { return m_strElementName.View(); }
  void SetElementName(WStringView name);
  static void SetElementName(CXmlObjectBase* object, const WChar* name) { object->SetElementName(name); }
  /// Takes the local name of the element that the object is read from.
  void TakeElementName(const CXmlElement& element);

  /// Tell `sink` of a change of `collection`: OnEvent with the type of the same name. An index of -1 stands for all.
  static void FireOnCollectionChangeEvent(IEventSink* sink, CXmlObjectBase* collection);
  static void FireOnCollectionAddEvent(IEventSink* sink, CXmlObjectBase* collection, void* item);
  static void FireOnCollectionAddCompleteEvent(IEventSink* sink, CXmlObjectBase* collection, void* item);
  static void FireOnCollectionRemoveEvent(IEventSink* sink, CXmlObjectBase* collection, int index);
  static void FireOnCollectionRemoveCompleteEvent(IEventSink* sink, CXmlObjectBase* collection, int index);

  /// Whether `element` has this name: the local name is equal, and the namespace too unless the context ignores it.
  static bool DoesElementNameMatch(const CSerializationContext& context, const CXmlElement* element, const WChar* name,
                                   const WChar* ns);
  /// Throws COvInvalidParamException when `object` is not null and has another element name than `name`.
  static void Throw_IfElementNameDiffers(const CXmlObjectBase* object, const WChar* name);
  /// Throws COvInvalidParamException, naming the property, when `object` is null.
  static void Throw_IfPropertyIsNull(const CXmlObjectBase* object, const WChar* name);

  /// Whether the wildcard list `allowed` ("##any", "##other", "##local", "##targetNamespace", URIs; separated by single
  /// blanks) lets `ns` pass. A URI in the list lets an empty `ns` pass as well.
  static bool IsNamespaceValid(const WChar* ns, const WChar* allowed, const WChar* target);
  /// Throws COvInvalidNamespaceException when IsNamespaceValid says no.
  static void TestNamespace(const WChar* ns, const WChar* allowed, const WChar* target);

  /// \name Keeping one member of a choice selected
  /// For the setters of generated choices; `selected` is the name of the member that is set, empty for none. Each
  /// throws COvInvalidStateException, naming that member, when a second one is to be set.
  /// \{
  /// A property that holds an object was set to `value`, which may be null.
  static void Choice_SelectElement(const WChar* name, const CXmlObjectBase* value, WString& selected);
  /// A property that holds a value was set, or cleared: `valid` false clears the selection, whichever it was.
  static void Choice_SetElementValid(bool valid, const WChar* name, WString& selected);
  /// A collection has `count` items now.
  static void Choice_CollectionChanged(const WChar* name, long count, WString& selected);
  /// Reads one run of items of a collection unless `count` is above 0, tests their number and adds 1 to `count`.
  /// `child` becomes the first child that is unread.
  static void Choice_Read_Collection(CXmlCollectionBase* collection, CXmlElement* parent, CXmlElement*& child,
                                     long& count, const CSerializationContext& context);
  /// \}

 private:
  friend class OvXmlLib16Data::CAttributeInfo;
  friend class OvXmlLib16Data::CElementInfo;

  static void CheckVersion();
  void WriteDocument(CTextStream& stream, bool header, bool formatted, EOLType eol,
                     const CSerializationContext& context) const;
  template <class Load>
  void ReadDocument(const CSerializationContext& context, Load&& load);

  void WriteJson(CTextStream& stream, bool formatted, EOLType eol, const CSerializationContext& context) const;
  template <class Open>
  void ReadJson(const CSerializationContext& context, Open&& open);
  bool ReadJsonDirectly(std::string_view text, CXmlDocument& document, const CSerializationContext& context);
  void FromJson_Int(const CBinaryData& xml, const CSerializationContext& context);

  void ReadElement(CXmlElement* element, const CSerializationContext& context);

  CompactText m_strElementName;
  std::atomic<std::int32_t> m_references = 0;
  bool m_readsOwnElement = false;
};

}  // namespace OvXmlLib16
