// The desktop entry's MimeType= line against the extension catalogue: every extension the
// program opens is offered through its shared-mime-info type, and no type is listed that
// none of the catalogue's extensions has.
#include "core/catalogue.h"

#include <QFile>
#include <QMimeDatabase>
#include <QSet>
#include <QTextStream>
#include <gtest/gtest.h>

using namespace tw;

namespace {

// Extensions whose shared-mime-info type is left out of the entry, and why.
const QHash<QString, const char *> &leftOut()
{
    static const QHash<QString, const char *> h = {
        {"EMF", "no reader for EMF on Linux"},
        {"ICA", "the .ica type is a Citrix connection file, not an IBM IOCA picture"},
        {"IMG", "the .img type is a raw disk image, not a GEM raster picture"},
        {"BAK", "application/x-trash stands for every backup file (*~, *.old, ...)"},
    };
    return h;
}

QStringList desktopMimeTypes()
{
    QFile f(QStringLiteral(TW_DESKTOP_FILE));
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text)) return {};
    QTextStream in(&f);
    bool inEntry = false;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.startsWith(u'[')) inEntry = line == QLatin1String("[Desktop Entry]");
        else if (inEntry && line.startsWith(QLatin1String("MimeType=")))
            return line.mid(9).split(u';', Qt::SkipEmptyParts);
    }
    return {};
}

QStringList typesOfExt(const QMimeDatabase &db, const QString &ext)
{
    QStringList names;
    for (const QMimeType &t : db.mimeTypesForFileName(QStringLiteral("file.") + ext.toLower()))
        names << t.name();
    return names;
}

}  // namespace

TEST(DesktopEntry, ListsTheTypeOfEveryExtensionThatOpens)
{
    const QStringList listed = desktopMimeTypes();
    ASSERT_FALSE(listed.isEmpty()) << "no MimeType= line in " << TW_DESKTOP_FILE;
    QMimeDatabase db;
    int offered = 0;
    for (const QString &ext : fileExtLiterals()) {
        if (leftOut().contains(ext)) continue;
        const QStringList types = typesOfExt(db, ext);
        if (types.isEmpty()) continue;  // shared-mime-info knows no type for it
        bool found = false;
        for (const QString &t : types) found = found || listed.contains(t);
        EXPECT_TRUE(found) << ext.toStdString() << ": none of " << types.join(u' ').toStdString()
                           << " is listed";
        ++offered;
    }
    // Most of the catalogue has a type; a database that knew none would prove nothing.
    EXPECT_GE(offered, 50);
}

TEST(DesktopEntry, ListsNoTypeTheProgramDoesNotOpen)
{
    QMimeDatabase db;
    QSet<QString> reached;
    for (const QString &ext : fileExtLiterals()) {
        if (leftOut().contains(ext)) continue;
        for (const QString &t : typesOfExt(db, ext)) reached.insert(t);
    }
    const QStringList listed = desktopMimeTypes();
    ASSERT_FALSE(listed.isEmpty());
    EXPECT_EQ(QSet<QString>(listed.begin(), listed.end()).size(), listed.size()) << "a type is listed twice";
    for (const QString &t : listed) {
        EXPECT_TRUE(db.mimeTypeForName(t).isValid()) << t.toStdString() << " is no known type";
        EXPECT_TRUE(reached.contains(t))
            << t.toStdString() << " belongs to no extension of the catalogue that opens";
    }
}

TEST(DesktopEntry, LeftOutTypesAreNotListed)
{
    QMimeDatabase db;
    const QStringList listed = desktopMimeTypes();
    for (auto it = leftOut().begin(); it != leftOut().end(); ++it) {
        ASSERT_TRUE(fileExtLiterals().end()
                    != std::find(fileExtLiterals().begin(), fileExtLiterals().end(), it.key()));
        for (const QString &t : typesOfExt(db, it.key()))
            EXPECT_FALSE(listed.contains(t)) << t.toStdString() << ": " << it.value();
    }
}
