#pragma once

#include "OdbcHandle.h"

#include <QString>
#include <QStringList>

#include <vector>

struct OdbcDataSource {
    QString name;
    QString driver; // as the manager describes it: the driver's name or its file
};

// An environment for version 3 of the interface; null when the manager gives none.
OdbcHandle makeEnvironment();

// What the manager knows; empty when nothing is configured.
std::vector<OdbcDataSource> configuredDataSources(const OdbcHandle& environment);
QStringList installedDrivers(const OdbcHandle& environment);

// Where the manager looks for them, for a person who wonders why a driver is not seen.
QString configurationPlaces();
