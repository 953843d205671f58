#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UpdateData.h>

#include <cstddef>
#include <memory>
#include <string>

class QObject;

/// The base of jobs on a worker thread that tell one object, the receiver, what they do. Everything
/// travels as a call of one of the receiver's slots by name, made on the receiver's thread: in the order
/// sent, with copied arguments, while the worker goes on at once. A call of a slot that the receiver lacks is
/// dropped with a warning from Qt.
///
/// The receiver may be destroyed at any time on its own thread; calls that are under way, and all that follow,
/// are then dropped. It may also be moved to another thread at any time (`QObject::moveToThread`), and takes the calls
/// that are under way along: they and all that follow are made on its new thread, in the order sent. The thread that it
/// left need not run an event loop any more. Jobs can be copied; copies share the receiver.
class VELKLIBRARY_EXPORT LibraryProgressBase
{
public:
    virtual ~LibraryProgressBase();
    LibraryProgressBase(const LibraryProgressBase&);                 ///< shares the receiver
    LibraryProgressBase(LibraryProgressBase&&) noexcept;             ///< takes the receiver over
    LibraryProgressBase& operator=(const LibraryProgressBase&);      ///< shares the receiver
    LibraryProgressBase& operator=(LibraryProgressBase&&) noexcept;  ///< takes the receiver over

    // Each sends one call, from any thread, and throws nothing except std::bad_alloc.

    /// "onSetText(std::string)": what is being done.
    void sendText(const std::string& text) const;
    /// "onSetRangeInGauge(size_t)": a gauge starts, with that many steps.
    void sendRange(std::size_t range) const;
    /// "onUpdateInGauge()": one step is done.
    void sendStep() const;
    /// "onSetValueInGauge(size_t)": how many steps are done.
    void sendValue(std::size_t value) const;
    /// "onSetUnits(std::string)": the unit of the gauge's steps.
    void sendUnits(const std::string& units) const;
    /// "onCatalogUpdatedEvent(FileStringPair)": a new catalog file is ready for installation.
    void sendCatalogUpdated(const FileStringPair& paths) const;
    /// "closeCatalogUpdateEvent(LibraryCatalogUpdate::UpdateData)": the run has ended.
    void sendEnd(const LibraryCatalogUpdate::UpdateData& data) const;
    /// "onClose()": the run has ended after it was cancelled.
    void sendCancelled() const;

protected:
    /// Registers the argument types with Qt: "std::string", "size_t" (as Qt's unsigned 64-bit type, which is a
    /// different C++ type on each system), "fileString", "LibraryCatalogUpdate::UpdateData" and
    /// "FileStringPair". Call it on the receiver's thread, or on another one as long as the receiver cannot be
    /// destroyed meanwhile.
    explicit LibraryProgressBase(QObject& receiver);

private:
    class Relay;
    std::shared_ptr<Relay> relay_;
};
