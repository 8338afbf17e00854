#pragma once

#include <QSplitter>

namespace orvelle {

/// A splitter whose handles take the focus by Tab and are moved by the arrows,
/// to the ends by Home and End.
class KeyboardSplitter : public QSplitter
{
    Q_OBJECT

public:
    /// `handleName` is what a handle is called by assistive technology.
    explicit KeyboardSplitter(const QString &handleName, QWidget *parent = nullptr);

protected:
    QSplitterHandle *createHandle() override;

private:
    QString m_handleName;
};

} // namespace orvelle
