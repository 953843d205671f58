#pragma once

/// @file
/// Checks for a file that is saved whole or not at all: whenever the process dies or the disk is full, either the
/// old or the new document must be there. On POSIX.

#include "support/Processes.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace test {

/// Runs `save`, which turns `file` from `oldText` into another document, in processes that are killed at each
/// of its system calls in turn. `isNew` returns whether a text is the complete new document.
inline void expectOldOrNewAtEveryDeath(const fileString& file, const std::string& oldText,
                                       const std::function<void()>& save,
                                       const std::function<bool(const std::string&)>& isNew)
{
    int olds = 0;
    int news = 0;
    killedAtEachSystemCall([&] { writeFile(file, oldText); }, save,
                           [&](bool died) {
                               const std::string text = readFile(file);
                               const bool old = text == oldText;
                               ASSERT_TRUE(old ? died : isNew(text)) << "torn: " << text.substr(0, 100);
                               ++(old ? olds : news);
                           });
    EXPECT_GT(olds, 5) << "the saving was not watched";
    EXPECT_GT(news, 0);
}

/// Runs `save` in a process for which the disk is full after `bytes`; the file must stay unchanged.
inline void expectOldOnFullDisk(const fileString& file, const std::string& oldText, std::size_t bytes,
                                const std::function<void()>& save)
{
    writeFile(file, oldText);
    const std::size_t names = listFolder(file.parentPath()).size();
    inChild([&] {
        limitFileSize(bytes);
        save();
    });
    EXPECT_EQ(readFile(file), oldText);
    EXPECT_EQ(listFolder(file.parentPath()).size(), names) << "something was left behind";
}

/// Runs `save(writer)` in several processes at once, many times each, while this one reads; it must always read
/// a whole document.
inline void expectWholeAmongWriters(const fileString& file, const std::function<void(int writer)>& save,
                                    const std::function<bool(const std::string&)>& isWhole)
{
    constexpr int writers = 2;
    constexpr int saves = 25;
    save(0);
    std::vector<std::unique_ptr<Child>> children;
    for (int writer = 0; writer < writers; ++writer)
        children.push_back(std::make_unique<Child>([&save, writer] {
            for (int i = 0; i < saves; ++i)
                save(writer);
        }));
    for (int reading = 0; reading < 50; ++reading)
        ASSERT_TRUE(isWhole(readFile(file)));
    for (const auto& child : children)
        child->wait();
    EXPECT_TRUE(isWhole(readFile(file)));
    EXPECT_EQ(listFolder(file.parentPath()).size(), 1U) << "something was left behind";
}

}  // namespace test
