#include "file_filters.h"

namespace tw {

QStringList qtNameFilters(const QString &pipeFilter)
{
    QStringList out;
    const QStringList parts = pipeFilter.split(u'|');
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString &p : parts[i + 1].split(u';', Qt::SkipEmptyParts)) {
            const QString t = p.trimmed();
            if (t.isEmpty()) continue;
            patterns << t;
            if (t.toLower() != t) patterns << t.toLower();
        }
        // The dialog takes what stands in the last parentheses as the patterns; a caption
        // with its own would be read as patterns, so those become brackets.
        // Blanks run together as the dialog would show them anyway.
        QString caption = parts[i].simplified();
        caption.replace(u'(', u'[').replace(u')', u']');
        out << caption + QStringLiteral(" (") + patterns.join(u' ') + u')';
    }
    return out;
}

}  // namespace tw
