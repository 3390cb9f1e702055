// The abstract output of all serialisation.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "ovxmllib/binding/Enumerations.h"
#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/InstanceMonitor.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

class PreparedName;
class NamespaceScope;

/// What a bound object writes itself to. Which format comes out is decided by the writer that it is given.
///
/// Calling order: Open; AddNamespace and SetDefaultNamespace for what the root shall declare; comments and processing
/// instructions; StartElement, attributes, then text and child elements, EndElement; Close. One writer serves one
/// document and belongs to one thread. Texts are copied or written during the call and not kept. Calling WriteText,
/// EndElement, WriteAttribute, WriteXsiType or WriteXsiNil with no element open is an error in the program, which
/// debug builds assert.
class OVXMLLIB_API CXmlWriter : public CInstanceMonitor {
 public:
  CXmlWriter(const CXmlWriter&) = delete;
  CXmlWriter& operator=(const CXmlWriter&) = delete;
  ~CXmlWriter() override;

  /// Makes the writer ready.
  virtual void Open();
  /// Ends the document. Throws COvException "An Element has not been closed." when an element is open.
  virtual void Close();

  /// Sets the default namespace: before the first element that of the document, which the root declares; with an
  /// element open that of its scope, of which nothing is written.
  virtual void SetDefaultNamespace(WStringView ns);
  /// Gives a namespace its alias: before the first element for the document, and the root declares it; with an element
  /// open for its scope, of which nothing is written. An empty alias takes the alias away.
  virtual void AddNamespace(WStringView alias, WStringView ns);

  /// Writes a comment. "--", which XML does not allow in comments, is not looked for.
  virtual void WriteComment(WStringView text) = 0;
  /// Writes a whole processing instruction, delimiters included, unchecked; ahead of the root.
  virtual void WriteProcessingInstruction(WStringView text) = 0;
  /// Writes `text` unchecked into the start tag that is open.
  virtual void WriteInlineSchema(WStringView text) = 0;
  /// Starts an element. `ns` is empty for none; inside a default namespace an element without one cannot be written and
  /// reads back as one of that namespace.
  virtual void StartElement(WStringView name, WStringView ns) = 0;
  /// Writes character data; an empty text writes nothing. `type` tells formats with typed values what it prints.
  virtual void WriteText(WStringView text, ItemType type) = 0;
  /// Ends the element that is open.
  virtual void EndElement() = 0;
  /// Writes an attribute. Throws COvException "Attributes must be added before elements" when the start tag is closed,
  /// as do the next two.
  virtual void WriteAttribute(WStringView name, WStringView ns, WStringView value, ItemType type) = 0;
  /// Writes `xsi:type`; `ns` and `typeName` name the type.
  virtual void WriteXsiType(WStringView ns, WStringView typeName, ItemType type) = 0;
  /// Writes `xsi:nil` as true.
  virtual void WriteXsiNil() = 0;
  /// Writes an element that has text and nothing else, as StartElement, WriteText and EndElement do, which is what it
  /// calls here. Most elements are such: a format may have a shorter way.
  virtual void WriteTextElement(WStringView name, WStringView ns, WStringView text, ItemType type);

  /// \name The same for names that are written many times
  /// They do what StartElement, WriteAttribute and WriteTextElement do, which is what they call here.
  /// \{
  virtual void StartPrepared(const PreparedName& name);
  virtual void WritePreparedAttribute(const PreparedName& name, WStringView value, ItemType type);
  virtual void WritePreparedElement(const PreparedName& name, WStringView text, ItemType type);
  /// \}

  /// Says which prepared name it is whose namespace an object is given as the text of its element's. Returns what was
  /// said before, or null, for the caller to restore.
  const PreparedName* Announce(const PreparedName* name) noexcept { return std::exchange(m_announced, name); }
  /// The name that was announced, if its element is to have this namespace and this name; else null.
  const PreparedName* FindAnnounced(WStringView name, const WChar* ns) const noexcept;

  /// Tells a format with arrays that a collection begins (1) or has ended (3); kept on the open element, if any.
  void SetArrayState(int state) noexcept;

 protected:
  /// An element that is open, with what scopes its namespaces.
  class CXmlWriterContext;

  explicit CXmlWriter(ClassType& record);

  /// Opens an element under the one that is open, or as the root, with the start tag open. The result is the writer's,
  /// as GetContext gives it from now on.
  CXmlWriterContext& PushContext();
  /// Ends the element that is open. Both are defined in XmlWriterContext.h, which every writer includes.
  void PopContext() noexcept;
  /// The innermost open element, or null outside the root.
  CXmlWriterContext* GetContext() const noexcept { return m_pContext; }
  /// What was set before the first element.
  const NamespaceScope& GetDocumentScope() const noexcept { return *m_documentScope; }
  /// Throws COvException "Attributes must be added before elements" unless the start tag is open.
  void CheckInStartTag() const;

 private:
  CXmlWriterContext& AddContext(CXmlWriterContext*& place, CXmlWriterContext* parent);

  std::unique_ptr<NamespaceScope> m_documentScope;
  CXmlWriterContext* m_pContext = nullptr;                     // the innermost open one of m_contexts
  CXmlWriterContext* m_pRootContext = nullptr;                 // the first of them
  const PreparedName* m_announced = nullptr;                   // not owned
  std::vector<std::unique_ptr<CXmlWriterContext>> m_contexts;  // by depth; those below the open one wait for reuse
};

}  // namespace OvXmlLib16
