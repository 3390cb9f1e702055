// Reads JSON text.
#pragma once

#include <memory>

#include "ovxmllib/json/JsonReaderDefaultHandler.h"

namespace OvXmlLib16 {

/// Goes over a text and tells a handler what is in it; JsonParser.h has the grammar. Set the handler and the two
/// options, then call Parse.
class CJsonTextReader : public CInstanceMonitor {
 public:
  /// The text is not owned and must outlive the reader.
  explicit CJsonTextReader(WStringView text);
  CJsonTextReader(const CJsonTextReader&) = delete;
  CJsonTextReader& operator=(const CJsonTextReader&) = delete;
  ~CJsonTextReader() override;

  /// Takes the handler over that gets the events.
  void SetHandler(std::unique_ptr<IJsonReaderHandler> handler) noexcept { m_handler.SetHandler(std::move(handler)); }
  /// Tells where the reader is; owned by the reader.
  IErrorPathProvider* GetErrorPathProvider() noexcept { return &m_handler; }

  /// Reads the whole text. Throws COvValidationException with message, path, line and column at the first fault, which
  /// no event follows; what the handler throws passes unchanged.
  void Parse();

  bool m_bAllowComments = true;  ///< whether comments are passed over
  WString m_strRootElementName;  ///< the name of the member that the text is taken for; empty: none

 private:
  static ClassType& Record();

  WStringView m_strText;
  CJsonReaderDefaultHandler m_handler;
};

}  // namespace OvXmlLib16
