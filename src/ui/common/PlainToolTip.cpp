#include "ui/common/PlainToolTip.h"

#include <QTextDocument>

namespace orvelle {

namespace {

/// The toolkit wraps no plain text.
constexpr qsizetype longestLine = 80;
constexpr qsizetype longestText = 1000;

} // namespace

QString plainToolTip(const QString &text)
{
    if (text.size() <= longestLine && !Qt::mightBeRichText(text))
        return text;
    QString shown = text.left(longestText);
    if (shown.size() < text.size())
        shown += u'…';
    return QStringLiteral("<p style='white-space:pre-wrap'>%1</p>").arg(shown.toHtmlEscaped());
}

} // namespace orvelle
