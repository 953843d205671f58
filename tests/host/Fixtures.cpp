#include "Fixtures.h"

#include <QJsonDocument>
#include <QProcess>
#include <QStringList>

#include <sqlite3.h>
#include <zip.h>

namespace test {

void writeZip(const fileString& path, const ZipEntries& entries)
{
    int code = 0;
    zip_t* const archive = zip_open(path.utf8().c_str(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    ASSERT_NE(archive, nullptr) << code;
    for (const auto& [name, bytes] : entries) {
        zip_source_t* const source = zip_source_buffer(archive, bytes.data(), bytes.size(), 0);
        ASSERT_GE(zip_file_add(archive, name.c_str(), source, ZIP_FL_OVERWRITE | ZIP_FL_ENC_UTF_8), 0) << name;
    }
    ASSERT_EQ(zip_close(archive), 0);
}

std::string png(const std::string& rest)
{
    return std::string("\x89PNG\r\n\x1a\n", 8) + rest;
}

VelkHost::Catalog smallCatalog()
{
    using VelkHost::FileRole;
    VelkHost::Catalog catalog;
    catalog.id = "test-library";
    catalog.name = "Test ' \" library \xE6\xA4\x85";
    catalog.kind = VelkHost::LibraryKind::Bonus;
    catalog.language = "pt_PT";
    catalog.description = "A description";
    catalog.created = "2026-01-02T03:04:05Z";
    catalog.folders = {{VelkHost::Folder::noParent, "Furniture"},
                       {0, "Seating"},
                       {1, "Chairs"},
                       {VelkHost::Folder::noParent, "Empty"}};
    catalog.items = {
        {"id#1",
         2,
         "Chair",
         "seat, oak",
         png("chair"),
         {{FileRole::Model, "chair/chair.obj"}, {FileRole::Texture, "chair/oak.jpg"}}},
        {"id#2", 2, "Office chair", "seat, desk", "", {}},
        {"id#3", 0, "\xD0\xA1\xD1\x82\xD0\xBE\xD0\xBB", "", png(std::string(5'000, 'x')), {{FileRole::Other, "t.mtl"}}},
        {"id#4", 1, "Armchair", "red, seat", "", {}}};
    return catalog;
}

void runSql(const fileString& path, const std::string& sql)
{
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.utf8().c_str(), &database), SQLITE_OK);
    char* error = nullptr;
    sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error);
    EXPECT_EQ(error, nullptr) << error;
    sqlite3_free(error);
    sqlite3_close(database);
}

QJsonObject ProgramRun::json() const
{
    return QJsonDocument::fromJson(QByteArray::fromStdString(output)).object();
}

ProgramRun runProgram(const fileString& folder, const std::vector<std::string>& arguments,
                      const std::string& outputFile)
{
    constexpr int patience = 120'000;  // milliseconds
    const QString home = QString::fromStdString(folder.utf8());
    QStringList list;
    for (const std::string& argument : arguments)
        list << QString::fromStdString(argument);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home);
    environment.insert(QStringLiteral("LOCALAPPDATA"), home);
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home);
    if (!outputFile.empty())
        process.setStandardOutputFile(QString::fromStdString(outputFile));
    process.start(QStringLiteral(VELK_PROGRAM), list);
    ProgramRun run;
    if (!process.waitForFinished(patience)) {
        ADD_FAILURE() << "velk did not end: " << process.errorString().toStdString();
        return run;
    }
    run.crashed = process.exitStatus() != QProcess::NormalExit;
    run.exitCode = process.exitCode();
    run.output = process.readAllStandardOutput().toStdString();
    run.errors = process.readAllStandardError().toStdString();
    return run;
}

}  // namespace test
