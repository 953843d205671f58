#include "host/installation/DataFileReason.h"

namespace VelkHost {
namespace {

const char* notAs(Library::DataFileValue expected)
{
    using enum Library::DataFileValue;
    switch (expected) {
        case List:
            return "%1 is not a list";
        case Text:
            return "%1 is not a text";
        case Integer:
            return "%1 is not an integer";
        case Boolean:
            return "%1 is neither true nor false";
        case Time:
            return "%1 is not a time";
        default:
            return "%1 is not an object";
    }
}

}  // namespace

Reason reasonOf(const Library::DataFileResult& reading)
{
    using enum Library::DataFileFault;
    switch (reading.fault) {
        case NotAnObject:
            return "is not a JSON object";
        case WrongMember:
            return {"is damaged: %1", {Reason(notAs(reading.expected), {reading.member})}};
        default:
            return "cannot be read";
    }
}

}  // namespace VelkHost
