#include "support/Imports.h"

#include <windows.h>

#include <cstddef>
#include <cstring>
#include <initializer_list>

namespace test {
namespace {

template <typename Type>
Type* at(std::byte* base, std::size_t offset)
{
    return reinterpret_cast<Type*>(base + offset);
}

void write(ULONGLONG& place, void (*function)())
{
    DWORD before = 0;
    ::VirtualProtect(&place, sizeof place, PAGE_READWRITE, &before);
    place = reinterpret_cast<ULONGLONG>(function);
    ::VirtualProtect(&place, sizeof place, before, &before);
}

void redirectIn(std::byte* base, const char* name, void (*replacement)())
{
    const auto* const header = at<IMAGE_NT_HEADERS>(base, at<IMAGE_DOS_HEADER>(base, 0)->e_lfanew);
    const DWORD imports = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(base, imports); library->Name != 0; ++library) {
        const auto* wanted = at<IMAGE_THUNK_DATA>(base, library->OriginalFirstThunk);
        auto* found = at<IMAGE_THUNK_DATA>(base, library->FirstThunk);
        for (; wanted->u1.AddressOfData != 0; ++wanted, ++found)
            if (!IMAGE_SNAP_BY_ORDINAL(wanted->u1.Ordinal) &&
                std::strcmp(at<IMAGE_IMPORT_BY_NAME>(base, wanted->u1.AddressOfData)->Name, name) == 0)
                write(found->u1.Function, replacement);
    }
}

}  // namespace

void redirectImports(const char* name, void (*replacement)())
{
    // Microsoft's compiler puts nothing before the names.
    for (const wchar_t* library : {L"libVelkCommon.dll", L"libVelkLibrary.dll", L"libVelkLibraryCore.dll",
                                   L"VelkCommon.dll", L"VelkLibrary.dll", L"VelkLibraryCore.dll"})
        if (const HMODULE module = ::GetModuleHandleW(library))
            redirectIn(reinterpret_cast<std::byte*>(module), name, replacement);
}

}  // namespace test
