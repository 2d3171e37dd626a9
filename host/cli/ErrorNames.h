// The errors of a PostScript run, in the words of the plug-in's message box, in English and by their
// PostScript names.
#pragma once

#include <array>
#include <string_view>

struct ErrorName {
    const char* chinese;     // as the plug-in's own string table has it
    const char* english;     // as this host's English string table has it
    const char* postScript;  // the error name of the PostScript Language Reference that comes nearest
};

constexpr unsigned kFirstErrorString = 4017;  // id of the first error's text in the string tables

// In the order of their string ids.
constexpr std::array<ErrorName, 12> kErrorNames{{
    {"文件格式错误", "not an EPS file", "invalidfileaccess"},
    {"类型不匹配", "operand of the wrong type", "typecheck"},
    {"名称未定义", "undefined name", "undefined"},
    {"语法错误", "syntax error", "syntaxerror"},
    {"文件I/O错误", "file I/O error", "ioerror"},
    {"操作栈下溢", "too few operands", "stackunderflow"},
    {"操作范围错误", "operand out of range", "rangecheck"},
    {"mark 不匹配", "no matching mark", "unmatchedmark"},
    {"字典栈下溢", "too many end operators", "dictstackunderflow"},
    {"VM 栈上溢", "too many save levels", "limitcheck"},
    {"路径没有起始点", "no current point", "nocurrentpoint"},
    {"遇到了系统暂不支持的操作符", "unsupported operator", "undefined"},
}};

// The error that a message box tells of, found by the end of its text; null when it tells of none.
const ErrorName* FindErrorName(std::string_view boxText);
