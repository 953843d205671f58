#pragma once

#include <VelkLibrary/Export.h>
#include <VelkLibrary/UI/TreeItemData.h>

namespace Library {

/// Remembers the one library item that the user has chosen in the browser, for the parts of the host that
/// work with it later.
///
/// The instance may be asked for on any thread; the item belongs to the user-interface thread. Cleaning up is
/// not synchronised with a thread that still uses the instance.
class VELKLIBRARY_EXPORT Chooser
{
public:
    /// The instance, made when there is none; nothing is chosen then. Valid until cleanup().
    static Chooser& get();

    /// Destroys the instance, if there is one; the next get() makes a fresh one. Call it before the
    /// application ends.
    static void cleanup();

    Chooser(const Chooser&) = delete;
    Chooser& operator=(const Chooser&) = delete;
    ~Chooser();

    /// Remembers a copy of `item`: its text, flags, data, id, type, catalog file and selection pane name, but
    /// not its children or its place in a model.
    void setData(const TreeItemData& item);

    /// A copy of the chosen item; one that is not valid (id -1, no catalog file) when nothing is chosen.
    TreeItemData getData() const;

    /// Forgets the chosen item.
    void clearData();

private:
    Chooser();

    TreeItemData chosen_;
};

}  // namespace Library
