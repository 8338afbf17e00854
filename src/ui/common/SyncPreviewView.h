#pragma once

#include "sync/SyncAnalysis.h"

#include <QDialog>

class QBoxLayout;
class QPushButton;

namespace orvelle {

class SyncPreviewModel;

/// The sheet that lists what a synchronisation would change, for each change
/// with a box that leaves it out, and for each group of duplicates with the
/// choice of the copy that stays. Modal to `parent`; deletes itself when
/// closed. Accepted when it is to be done.
class SyncPreviewView : public QDialog
{
    Q_OBJECT

public:
    /// Purpose::Decide is for a change that can only be taken as a whole: there
    /// are no boxes, and beside taking it in and looking away it offers to keep
    /// what is here, which is told by keepHere().
    enum class Purpose { Apply, Decide };

    SyncPreviewView(const SyncAnalysis &analysis, Purpose purpose, QWidget *parent = nullptr);

    /// With what was unticked.
    const SyncAnalysis &analysis() const;

signals:
    void keepHere();

private:
    void addHead(QBoxLayout *column);
    void addChanges(QBoxLayout *column);
    void addButtons(QBoxLayout *column);
    void refresh();

    SyncPreviewModel *m_model;
    Purpose m_purpose;
    QPushButton *m_apply = nullptr;
};

} // namespace orvelle
