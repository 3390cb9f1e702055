// The options of a row, one letter each; tests/data/mapping/walks.vec tells which.
#pragma once

#include <stdexcept>
#include <string>

#include "ovxmllib/binding/SerializationContext.h"

namespace OvXmlLib16::test {

inline CSerializationContext ContextOf(const std::string& options) {
  CSerializationContext context;
  for (const char option : options) {
    switch (option) {
      case 'E':
        context.SetIgnoreUnknownElements(true);
        break;
      case 'M':
        context.SetIgnoreMissingMandatoryElements(true);
        break;
      case 'C':
        context.SetIgnoreMissingChoice(true);
        break;
      case 'N':
        context.SetIgnoreInvalidCollectionCounts(true);
        break;
      case 'S':
        context.SetIgnoreNamespaces(true);
        break;
      case 'A':
        context.SetIgnoreUnknownAttributes(true);
        break;
      case '2':
        context.SetSchemaType(SchemaType_NoNamespaces);
        break;
      case 'V':
        context.SetValidateOnRead(true);
        break;
      case 'O':
        context.SetNoOptionalAttributeDefaultOutput(true);
        break;
      case 'D':
        context.SetWriteDefaultElementValues(true);
        break;
      default:
        throw std::invalid_argument(options);
    }
  }
  return context;
}

/// An XML text without the declaration of the samples' namespace as the default.
inline std::string WithoutDefaultNamespace(std::string text) {
  const std::string declaration = " xmlns=\"urn:sample\"";
  return text.erase(std::min(text.size(), text.find(declaration)), declaration.size());
}

}  // namespace OvXmlLib16::test
