#include <cstring>
#include <iostream>
#include <new>

#include "tools/Commands.h"
#include "tools/Failure.h"

namespace {

using namespace ovxml;

struct Run {
  int operator()(int exitCode) const { return exitCode; }
  int operator()(const ConvertOptions& options) const { return Convert(options); }
  int operator()(const InfoOptions& options) const { return Info(options); }
  int operator()(const CheckOptions& options) const { return Check(options); }
  int operator()(const FiDumpOptions& options) const { return FiDump(options); }
};

int RunCommand(int argc, char** argv) {
  try {
    OvXmlLib16::CXmlObjectBase::Register(16, 1);
    return std::visit(Run(), ParseCommandLine(argc, argv));
  } catch (const Failure& failure) {
    PrintError(failure.line);
    return failure.code;
  } catch (const OvXmlLib16::COvException& exception) {
    PrintError(MessageOf(exception));
    return kBadInput;
  } catch (const std::bad_alloc&) {
    PrintError("there is not enough memory");
    return kLimitPassed;
  } catch (const std::exception& exception) {
    PrintError(exception.what());
    return kIoFailure;
  }
}

}  // namespace

int main(int argc, char** argv) {
  const int code = RunCommand(argc, argv);
  if (std::cout.flush()) return code;
  PrintError(std::string("-: ") + std::strerror(errno));
  return kIoFailure;
}
