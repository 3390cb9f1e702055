#include "ovxmllib/foundation/FileTextStream.h"

#include "ovxmllib/binding/FormatString.h"
#include "ovxmllib/binding/OvException.h"
#include "ovxmllib/foundation/OutputFile.h"

namespace OvXmlLib16 {

namespace {

[[noreturn]] void ThrowPieceFailure(int error) {
  throw COvException(FormatString(u"Failed to write data to the file. Error [0x%08X]", error));
}

}  // namespace

CFileTextStream::~CFileTextStream() = default;

void CFileTextStream::Open() {
  CTextStream::Open();
  m_hFile.Close();
  m_hFile = CreateOutputFile(m_fileName, GetEncoding());
  m_fileOffset = ByteOrderMark(GetEncoding()).size();
}

void CFileTextStream::Flush() {
  if (HasNothing()) return;
  platform::File file = std::move(m_hFile);  // closed by whatever throws below
  EncodeBuffered();
  const CBinaryData pending = TakeEncoded();
  if (const int error = file.WriteAt(pending.GetData(), pending.GetLength(), m_fileOffset); error != 0) {
    ThrowPieceFailure(error);
  }
  m_fileOffset += pending.GetLength();
  m_hFile = std::move(file);
}

void CFileTextStream::Close() {
  Flush();
  platform::File file = std::move(m_hFile);
  RequireWholePairs();
  if (const int error = file.Close(); error != 0) ThrowPieceFailure(error);
  CTextStream::Close();
}

}  // namespace OvXmlLib16
