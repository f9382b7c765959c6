// Scanners through SANE: the devices present, and one scan into a picture. SANE's statuses
// come back as the imaging status codes of the scanner rows of the error table.
#pragma once

#include <QImage>
#include <QString>
#include <QStringList>
#include <functional>

namespace tw::scanner {

// Status codes of the scanner rows.
enum : int {
    NoSourceManager = 20079,
    UnknownFailure = 20080,
    NoMemory = 20081,
    NoDataSource = 20082,
    SourceBusy = 20083,
    SourceError = 20084,
    UnknownCapability = 20085,
    OutOfRange = 20087,
    Cancelled = 20090,
};

struct Device {
    QString name;  // SANE's name, "test:0"
    QString description;  // vendor, model and type
};

// The devices SANE finds (local ones only: a network probe would hold the window for seconds).
// 0 or a status code.
int listDevices(QList<Device> *out);

// Scans one page from `device` ("" for the first device found). `keepGoing` is asked between
// pieces of data; false cancels the scan. 0 or a status code; `bits` is the picture's depth.
int scan(const QString &device, QImage *out, int *bits, const std::function<bool()> &keepGoing = {});

// The status code for a SANE status.
int statusOfSane(int saneStatus);

}  // namespace tw::scanner
