#pragma once

#include <VelkCommon/Json/json_writer.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// A way to read a document. It releases everything that it made before it returns.
struct JsonReader
{
    std::string name;
    std::function<void(const std::string& text)> read;
};

/// Our reader ("own"), two that make our tree in other ways ("Spirit" by its own parsers, with containers that are
/// moved, and "by hand", which checks no escapes), and other libraries with trees of their own.
std::vector<JsonReader> jsonReaders();

/// The document that json_writer::to_text() writes, written by RapidJSON.
std::string writtenByRapidJson(const json_writer::Object& root);

}  // namespace bench
