#include "core/file_messages.h"

#include "platform/base/file_error_text.h"

namespace jotlet {
namespace {

std::string Quoted(std::string_view path)
{
    std::string text = "\"";
    text += path;
    text += '"';
    return text;
}

}  // namespace

std::string AccessDeniedText(std::string_view path)
{
    return "Program can't use " + Quoted(path) + ".\r\nAccess has been denied";
}

std::string CannotText(std::string_view path, std::string_view doing, const FileError& error)
{
    return "Program can't " + std::string(doing) + " " + Quoted(path) + ".\r\n" + FileErrorText(error);
}

std::string ReadOnlyText(std::string_view path, const FileError& reason)
{
    const std::string can = "The notes of " + Quoted(path) + " can be read, but not changed. ";
    if (reason.operation == "open")
        return can + "The file can't be opened for writing here" + SystemReason(reason.systemError) + ".";
    return can + "On this drive programs take turns by a file in the same folder, and none can be made there.\r\n" +
           FileErrorText(reason);
}

std::string OpenFailureText(std::string_view path, OpenFailure failure, const FileError& error)
{
    switch (failure) {
        case OpenFailure::Missing:
            return "Program can't open " + Quoted(path) + ".\r\nThe file does not exist.";
        case OpenFailure::Busy:
        case OpenFailure::Permission:
            return AccessDeniedText(path);
        case OpenFailure::NotTableFile:
        case OpenFailure::Truncated:
            return "This file is not a Jotlet file.\r\n" + Quoted(path);
        case OpenFailure::TooLarge:
            return "Program can't open " + Quoted(path) + ".\r\nThe file is larger than 2 GB.";
        case OpenFailure::NoAnswer:
        case OpenFailure::None:
        case OpenFailure::Io:
            break;
    }
    return CannotText(path, "open", error);
}

}  // namespace jotlet
