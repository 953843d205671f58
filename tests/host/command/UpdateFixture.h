#pragma once

#include "host/fixtures/ProgramRun.h"

#include "support/Hashes.h"
#include "support/QtProcesses.h"
#include "support/ScriptedServer.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// The real program against a service in this process.
class UpdateFixture : public TestHost
{
    std::mutex mutex_;
    std::map<std::string, Reply> answers_;  // declared before the server, whose threads use them

protected:
    UpdateFixture()
    {
        server.on("/api", [this](const SeenRequest& request) {
            const std::lock_guard lock(mutex_);
            const auto found = answers_.find(request.parameter("library"));
            if (found != answers_.end())
                return found->second;
            return request.parameter("library").empty() ? Reply{} : Reply{.status = 404};
        });
    }

    void answer(const std::string& library, Reply reply)
    {
        const std::lock_guard lock(mutex_);
        answers_[library] = std::move(reply);
    }

    void publish(const std::string& library, const std::string& bytes)
    {
        answer(library, Reply::file(bytes, sha1(bytes)));
    }

    std::vector<std::string> arguments(std::vector<std::string> more = {}) const
    {
        std::vector<std::string> all{"update", "--service", server.url("/api?key=k"), "--home", "home"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    ProgramRun update(std::vector<std::string> more = {}) const
    {
        ProgramRun run = runProgram(folder(), arguments(std::move(more)));
        EXPECT_FALSE(run.crashed) << run.errors;
        return run;
    }

    void start(QProcess& velk) const
    {
        velk.setWorkingDirectory(QString::fromStdString(folder().utf8()));
        QStringList list;
        for (const std::string& argument : arguments())
            list.append(QString::fromStdString(argument));
        velk.start(QStringLiteral(VELK_PROGRAM), list);
        waitForStart(velk);
    }

    fileString home() const { return folder() / U"home"; }

    ScriptedServer server;
};

}  // namespace test
