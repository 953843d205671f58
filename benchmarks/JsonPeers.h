#pragma once

#include <VelkCommon/Json/json_writer.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// A way to read a document; everything that it made is released when it returns.
struct JsonReader
{
    std::string name;
    std::function<void(const std::string& text)> read;
};

/// Ours ("own"), two that make our tree in other ways ("Spirit", by its own parsers with containers moved,
/// and "by hand", which checks no escapes), and other libraries with trees of their own.
std::vector<JsonReader> jsonReaders();

/// The same document as json_writer::to_text() by RapidJSON's writer.
std::string writtenByRapidJson(const json_writer::Object& root);

}  // namespace bench
