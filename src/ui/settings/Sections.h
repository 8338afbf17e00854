#pragma once

#include <QMargins>
#include <QString>

class QCheckBox;
class QLabel;
class QWidget;

namespace orvelle {

/// The margins of every tab's content.
QMargins tabMargins();

/// The heading of a page, larger than that of a section.
QLabel *pageTitle(const QString &text, QWidget *parent);

/// The heading of a section.
QLabel *sectionTitle(const QString &text, QWidget *parent);

/// The quieter line of explanation below a heading; wraps.
QLabel *sectionSubtitle(const QString &text, QWidget *parent);

/// An explanation for the line below a box: stands under the text of the box,
/// not under the box, and describes it to screen readers.
QLabel *checkBoxHint(const QString &text, QCheckBox *box);

/// What a label's control is called to screen readers: without the colon,
/// the dots and the mark of its key.
QString spokenLabel(QString label);

} // namespace orvelle
