#include "ovxmllib/foundation/FileBinaryStream.h"

#include "ovxmllib/foundation/OutputFile.h"

namespace OvXmlLib16 {

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::WriteToFile() {
  platform::File file = CreateOutputFile(m_fileName, m_encoding);
  int error = file.WriteAt(std::as_const(m_data).GetData(), m_data.GetLength(), ByteOrderMark(m_encoding).size());
  if (error == 0) error = file.Close();
  if (error != 0) ThrowWriteFailure(m_fileName, error);
}

}  // namespace OvXmlLib16
