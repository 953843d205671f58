#include "support/ZipJudges.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>

namespace test {

std::string describeZip(const fileString& path)
{
    const std::string program =
        "import sys, zipfile\n"
        "for i in zipfile.ZipFile(sys.argv[1]).infolist():\n"
        "    print([i.orig_filename, i.compress_type, i.CRC, i.compress_size, i.file_size, i.date_time, i.flag_bits,\n"
        "           i.external_attr, i.internal_attr, i.create_system, i.create_version, i.extra, i.comment])\n";
    const Verdict run = ask("python3 -c '" + program + "' '" + path.utf8() + "'");
    EXPECT_EQ(run.status, 0) << run.output;
    return run.output;
}

Verdict ask(const std::string& line)
{
    Verdict run;
    std::FILE* const pipe = ::popen(("(" + line + ") 2>&1 </dev/null").c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << "cannot run " << line;
        return run;
    }
    std::array<char, 4096> block;
    while (const std::size_t got = std::fread(block.data(), 1, block.size(), pipe))
        run.output.append(block.data(), got);
    const int status = ::pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

}  // namespace test
