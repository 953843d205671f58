#pragma once

#include "host/browser/jobs/ImportPlan.h"
#include "host/browser/jobs/LibraryJob.h"

#include <VelkLibrary/LibraryProgressBase.h>

#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

namespace VelkHost {

/// Imports library files into the user's libraries: packed ones are unpacked, and the archive of their
/// textures and other files goes to the user's textures. A file that is damaged, or whose import is
/// cancelled, leaves nothing behind.
class ImportJob : public LibraryJob
{
    Q_OBJECT

public:
    explicit ImportJob(std::vector<ImportSource> sources, QObject* parent = nullptr);
    ~ImportJob() override;

    void start(LibraryProgressPanel& panel) override;
    void cancel() override;

private:
    void run();
    void import(const ImportSource& source);
    void take(const ImportSource& source);
    JobOutcome outcome() const;

    const std::vector<ImportSource> sources_;
    std::optional<LibraryProgressBase> panel_;
    std::stop_source stop_;
    std::vector<fileString> imported_;  // the worker's until it has ended
    QStringList problems_;
    std::thread worker_;
};

}  // namespace VelkHost
