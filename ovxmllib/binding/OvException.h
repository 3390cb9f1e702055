// The exception family: the library's only way of reporting a failure.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>

#include "ovxmllib/binding/Export.h"
#include "ovxmllib/foundation/WideString.h"

namespace OvXmlLib16 {

/// The root of the family. Exceptions are thrown by value and caught by reference to this class, which has no relation
/// to std::exception. A layer that catches one wraps it: it throws its own with the caught one as inner exception.
///
/// Where the failure stands in a document is told twice: by the path of the element or attribute, and, for text input,
/// by line and column. Copying shares the inner exception, which never changes once it is one.
class OVXMLLIB_API COvException {
 public:
  COvException() = default;
  explicit COvException(WString message);
  COvException(WString message, const COvException& inner);
  /// A path that is not empty is appended to the message as "\nPath: " and the path.
  COvException(WString message, WString path);
  COvException(WString message, WString path, const COvException& inner);
  COvException(const COvException&) = default;
  COvException& operator=(const COvException&) = default;
  virtual ~COvException() = default;

  /// The message, with the path text already in it.
  WString GetMessage() const { return m_message; }
  /// The message, then the messages of the inner exceptions from the outermost to the cause, separated by "\n".
  WString GetFullMessage() const;
  /// The path alone, as "/a/b[2]/@c"; empty where none is known.
  WString GetPath() const { return m_path; }
  /// The wrapped exception in its own type, or null. Owned by this object.
  const COvException* GetInnerException() const noexcept { return m_inner.get(); }

  /// The line of the input at which it failed, counted from 1; 0 where no place is known.
  std::uint64_t GetLine() const noexcept { return m_line; }
  /// The column of the input, in characters counted from 1; 0 where no place is known.
  std::uint64_t GetColumn() const noexcept { return m_column; }
  /// Used by readers to add the place, which does not change the message.
  void SetPlace(std::uint64_t line, std::uint64_t column) noexcept;

 protected:
  /// A copy in the dynamic type, made with the copy constructor; the caller owns it.
  virtual COvException* Clone() const;

 private:
  WString m_message;
  WString m_path;
  std::shared_ptr<const COvException> m_inner;  // a clone of the wrapped exception
  std::uint64_t m_line = 0;
  std::uint64_t m_column = 0;
};

/// A document does not fit the metadata.
class OVXMLLIB_API COvValidationException : public COvException {
 public:
  COvValidationException() = default;
  COvValidationException(WString message, WString path);
  COvValidationException(WString message, WString path, const COvException& inner);
  COvValidationException(const COvValidationException&) = default;
  /// Takes over message, path, place and inner exception.
  COvValidationException(const COvException& other);
  COvValidationException& operator=(const COvValidationException&) = default;

 protected:
  COvException* Clone() const override;
};

/// A value is not one of its type, or a text cannot be written.
class OVXMLLIB_API COvInvalidValueException : public COvValidationException {
 public:
  COvInvalidValueException() = default;
  explicit COvInvalidValueException(WString message);
  COvInvalidValueException(WString message, const COvException& inner);
  COvInvalidValueException(const COvInvalidValueException&) = default;
  COvInvalidValueException(const COvException& other);
  COvInvalidValueException& operator=(const COvInvalidValueException&) = default;

 protected:
  COvException* Clone() const override;
};

/// A namespace is not one of those that a wildcard allows.
class OVXMLLIB_API COvInvalidNamespaceException : public COvValidationException {
 public:
  COvInvalidNamespaceException() = default;
  COvInvalidNamespaceException(WString message, WString path);
  COvInvalidNamespaceException(WString message, WString path, const COvException& inner);
  COvInvalidNamespaceException(const COvInvalidNamespaceException&) = default;
  COvInvalidNamespaceException(const COvException& other);
  COvInvalidNamespaceException& operator=(const COvInvalidNamespaceException&) = default;

 protected:
  COvException* Clone() const override;
};

/// An operation does not suit the state of its object.
class OVXMLLIB_API COvInvalidStateException : public COvException {
 public:
  COvInvalidStateException() = default;
  explicit COvInvalidStateException(WString message);
  COvInvalidStateException(WString message, const COvException& inner);
  COvInvalidStateException(const COvInvalidStateException&) = default;
  COvInvalidStateException(const COvException& other);
  COvInvalidStateException& operator=(const COvInvalidStateException&) = default;

 protected:
  COvException* Clone() const override;
};

/// An argument is not allowed.
class OVXMLLIB_API COvInvalidParamException : public COvException {
 public:
  COvInvalidParamException() = default;
  explicit COvInvalidParamException(WString message);
  COvInvalidParamException(WString message, const COvException& inner);
  COvInvalidParamException(const COvInvalidParamException&) = default;
  COvInvalidParamException(const COvException& other);
  COvInvalidParamException& operator=(const COvInvalidParamException&) = default;

 protected:
  COvException* Clone() const override;
};

/// A number lies outside the range of the type asked for.
class OVXMLLIB_API COvOverFlowException : public COvException {
 public:
  COvOverFlowException() = default;
  explicit COvOverFlowException(WString message);
  COvOverFlowException(WString message, const COvException& inner);
  COvOverFlowException(const COvOverFlowException&) = default;
  COvOverFlowException(const COvException& other);
  COvOverFlowException& operator=(const COvOverFlowException&) = default;

 protected:
  COvException* Clone() const override;
};

/// Prints the full message in UTF-8, and the place where one is known, as " (line L, column C)", or ", column C" behind
/// a message that ends in the line.
OVXMLLIB_API std::ostream& operator<<(std::ostream& out, const COvException& exception);

}  // namespace OvXmlLib16
