#pragma once

#include <VelkLibrary/LibraryCatalogUpdater.h>

#include <QObject>

/// What an application receives of an update: here, only its end.
class Receiver : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void closeCatalogUpdateEvent(const LibraryCatalogUpdate::UpdateData& data) { outcome = data.outcome; }

public:
    int outcome = -1;
};
