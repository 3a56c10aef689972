#include "ComputerName.h"

#include <QSysInfo>

QString systemComputerName() {
    return QSysInfo::machineHostName();
}
