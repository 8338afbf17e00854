#include "ui/common/QtFolderChooser.h"

#include <QFileDialog>

#include <utility>

namespace orvelle {

void QtFolderChooser::chooseFolder(const QString &message, const QString &confirmLabel, const QString &startFolder,
                                   std::function<void(QString)> done)
{
    auto *dialog = new QFileDialog(nullptr, message, startFolder);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setLabelText(QFileDialog::Accept, confirmLabel);
    QObject::connect(dialog, &QFileDialog::finished, dialog, [dialog, done = std::move(done)](int result) {
        const QStringList chosen = dialog->selectedFiles();
        done(result == QDialog::Accepted && !chosen.isEmpty() ? chosen.constFirst() : QString());
    });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

} // namespace orvelle
