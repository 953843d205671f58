#pragma once

/// @file
/// How reading or writing one of the module's data files ended.

#include <string>

namespace Library {

/// What went wrong with a data file.
enum class DataFileFault {
    None,              ///< nothing: it was read, or written, synced and put in place
    Missing,           ///< there is no file
    Unreadable,        ///< the file cannot be opened or read, or is larger than any data file (128 MiB)
    NotAnObject,       ///< the text is not a JSON object, and so perhaps some other file
    WrongMember,       ///< a member is not what it has to be, or a required one is missing
    MayNotBeWritten,   ///< this user may not write the existing file, or somebody else holds it
    NotRepresentable,  ///< a number to be written has more than 32 bits, which no reader accepts
    NotWritten         ///< writing failed, as on a full disk; an existing file has what it had
};

/// What a member of a data file has to be.
enum class DataFileValue { Object, List, Text, Integer, Boolean, Time };

/// The result of a read or a write; true when it succeeded.
struct DataFileResult
{
    DataFileFault fault = DataFileFault::None;       ///< None after a success
    std::string member;                              ///< with WrongMember: such as "Manufacturer_7"."Name" (UTF-8)
    DataFileValue expected = DataFileValue::Object;  ///< with WrongMember: what it should have been

    /// Whether the read or the write succeeded.
    explicit operator bool() const noexcept { return fault == DataFileFault::None; }
};

}  // namespace Library
