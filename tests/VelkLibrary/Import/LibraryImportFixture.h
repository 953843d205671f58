#pragma once

#include <VelkLibrary/LibraryImport.h>

#include "support/TestHost.h"
#include "support/ZipBuilder.h"

#include <VelkCommon/Archive/ZipUtils.h>
#include <VelkCommon/Files/FileUtils.h>
#include <VelkCommon/Text/StringConvert.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace test {

/// Records what is reported to it, and cancels when told to.
class RecordedProgress : public ProgressSubject
{
public:
    void updateLabels(std::u32string mainLabel, std::u32string secondaryLabel) override
    {
        note("labels", mainLabel, secondaryLabel);
    }
    void increment(std::u32string mainLabel, std::u32string secondaryLabel) override
    {
        note("step", mainLabel, secondaryLabel);
        ProgressSubject::increment(mainLabel, secondaryLabel);
    }
    void openSubRange(std::uint64_t steps, double units) override
    {
        calls.push_back("range " + std::to_string(steps) + " " + std::to_string(static_cast<int>(units)));
        ProgressSubject::openSubRange(steps, units);
    }
    bool isCancelled() const override
    {
        calls.emplace_back("cancelled?");
        return questions++ >= cancelAfter;
    }

    mutable std::vector<std::string> calls;
    mutable int questions = 0;
    int cancelAfter = std::numeric_limits<int>::max();

private:
    void note(const std::string& call, const std::u32string& mainLabel, const std::u32string& secondaryLabel)
    {
        calls.push_back(call + " [" + StringConvert::toStdUtf8String(mainLabel) + "] [" +
                        StringConvert::toStdUtf8String(secondaryLabel) + "]");
    }
};

/// The base of all tests of the import.
class ImportTest : public TestHost
{
protected:
    fileString at(const std::u32string& name) const { return folder() / name; }

    /// The names of an archive's entries, joined.
    static std::string namesOf(const fileString& archive)
    {
        std::string names;
        for (const fileString& name : ZipUtils::getFilenamesInArchive(archive))
            names += (names.empty() ? "" : " ") + name.utf8();
        return names;
    }

    /// An entry's data; "-" when it cannot be read completely.
    static std::string dataOf(const fileString& archive, const std::string& name)
    {
        std::string data = "-";
        ZipUtils::writeFileDataFromArchive(
            archive + fileString(ZipUtils::getDelimiter()) + fileString(name),
            [&](std::vector<unsigned char>& bytes) { data.assign(bytes.begin(), bytes.end()); });
        return data;
    }
};

}  // namespace test
