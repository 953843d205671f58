#include "support/ZipJudges.h"

#include "support/Processes.h"

#include <gtest/gtest.h>

#include <unistd.h>

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
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) {
        ADD_FAILURE() << "cannot make a pipe";
        return {};
    }
    Child shell([&] {
        ::dup2(ends[1], STDOUT_FILENO);
        ::execl("/bin/sh", "sh", "-c", ("(" + line + ") 2>&1 </dev/null").c_str(), static_cast<char*>(nullptr));
        ADD_FAILURE() << "cannot run " << line;
    });
    ::close(ends[1]);
    Verdict run;
    run.output = readToEnd(ends[0]);
    ::close(ends[0]);
    run.status = shell.end();
    return run;
}

}  // namespace test
