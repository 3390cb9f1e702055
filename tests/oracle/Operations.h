// What the oracles' rows are held against.
//
// A row is one line, its cells separated by tabs: operation, operands, expected. In a cell \t \n \r and \\ are escapes;
// everything else stands for itself, in UTF-8. The scripts end with the row "end", COUNT, by which a script that broke
// off is told from one that ran through.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>

namespace OvXmlLib16::test {

/// The cells between a row's operation and its expected result, unescaped.
using Operands = std::span<const std::string>;

/// Computes a result in the form in which the oracle writes it. A COvException that it throws becomes the result
/// "! MESSAGE". With too few operands it may do anything: the scripts are part of the tests.
using Operation = std::string (*)(Operands operands);

/// Operations by the name in a row's first cell.
using OperationTable = std::map<std::string, Operation, std::less<>>;

/// CBigInteger and CDecimal; rows from numbers_oracle.py.
const OperationTable& NumberOperations();
/// CDateTime and CDateTimeSpan; rows from dates_oracle.py.
const OperationTable& DateOperations();

}  // namespace OvXmlLib16::test
