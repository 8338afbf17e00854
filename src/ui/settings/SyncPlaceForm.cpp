#include "ui/settings/SyncPlaceForm.h"

#include "base/Text.h"
#include "links/LinkColors.h"
#include "platform/Alerts.h"
#include "platform/Volumes.h"
#include "ui/common/Colors.h"
#include "ui/common/Icons.h"
#include "ui/settings/Sections.h"

#include <QComboBox>
#include <QDir>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include <array>

namespace orvelle {

namespace {

constexpr int iconSide = 16;

struct KindChoice {
    SyncPlace::Kind kind;
    TextKey title;
    const char *symbol;
};
const std::array<KindChoice, 3> kindChoices{{
    {SyncPlace::Kind::None, "cloudSync.place.none"_text, "minus.circle.fill"},
    {SyncPlace::Kind::Folder, "cloudSync.place.folder"_text, "folder"},
    {SyncPlace::Kind::WebDav, "cloudSync.place.webdav"_text, "server.rack"},
}};

QLineEdit *field(const char *name, const QString &hint, QWidget *parent)
{
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(QString::fromLatin1(name));
    edit->setPlaceholderText(hint);
    return edit;
}

QPushButton *button(const char *name, TextKey title, QWidget *parent)
{
    auto *made = new QPushButton(text(title), parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setAutoDefault(false);
    return made;
}

} // namespace

SyncPlaceForm::SyncPlaceForm(FolderChooser *folderChooser, const Volumes &volumes, QWidget *parent)
    : QWidget(parent),
      m_folderChooser(folderChooser),
      m_volumes(volumes),
      m_form(new QFormLayout(this)),
      m_kind(new QComboBox(this)),
      m_folder(field("syncFolder", text("cloudSync.folderHint"_text), this)),
      m_choose(button("syncChooseFolder", "cloudSync.chooseFolder"_text, this)),
      m_server(field("syncServer", QStringLiteral("https://"), this)),
      m_user(field("syncUser", {}, this)),
      m_password(field("syncPassword", {}, this)),
      m_test(button("syncTest", "cloudSync.test"_text, this)),
      m_configure(button("syncConfigure", "cloudSync.configure"_text, this)),
      m_outcomeIcon(new QLabel(this)),
      m_outcome(sectionSubtitle({}, this)),
      m_folderRow(new QWidget(this))
{
    m_kind->setObjectName(QStringLiteral("syncPlaceKind"));
    for (const KindChoice &choice : kindChoices)
        m_kind->addItem(symbolIcon(QLatin1StringView(choice.symbol)), text(choice.title));
    m_password->setEchoMode(QLineEdit::Password);
    m_outcome->setObjectName(QStringLiteral("syncOutcome"));
    m_form->setContentsMargins({});
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_form->setHorizontalSpacing(12);
    m_form->setVerticalSpacing(8);
    addRows();
    addButtons();
    connect(m_kind, &QComboBox::currentIndexChanged, this, &SyncPlaceForm::edited);
    for (QLineEdit *edit : {m_folder, m_server, m_user, m_password}) {
        connect(edit, &QLineEdit::textChanged, this, &SyncPlaceForm::edited);
        connect(edit, &QLineEdit::returnPressed, m_configure, &QPushButton::click);
    }
    connect(m_choose, &QPushButton::clicked, this, &SyncPlaceForm::chooseFolder);
    connect(m_test, &QPushButton::clicked, this, &SyncPlaceForm::testWanted);
    connect(m_configure, &QPushButton::clicked, this, &SyncPlaceForm::configureWanted);
    showRows();
}

void SyncPlaceForm::addRows()
{
    auto *folderRow = new QHBoxLayout(m_folderRow);
    folderRow->setContentsMargins({});
    folderRow->addWidget(m_folder, 1);
    folderRow->addWidget(m_choose);
    m_choose->setVisible(m_folderChooser != nullptr);
    const std::pair<TextKey, QWidget *> rows[] = {{"cloudSync.place"_text, m_kind},
                                                  {"cloudSync.folder"_text, m_folderRow},
                                                  {"cloudSync.server"_text, m_server},
                                                  {"cloudSync.user"_text, m_user},
                                                  {"cloudSync.password"_text, m_password}};
    for (const auto &[label, widget] : rows) {
        m_form->addRow(text(label), widget);
        const QString name = spokenLabel(text(label));
        widget->setAccessibleName(name);
        if (widget == m_folderRow)
            m_folder->setAccessibleName(name);
    }
}

void SyncPlaceForm::addButtons()
{
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(m_configure);
    buttons->addWidget(m_test);
    buttons->addStretch(1);
    m_form->addRow(QString(), buttons);
    m_outcomeIcon->setFixedWidth(iconSide);
    auto *outcome = new QHBoxLayout;
    outcome->setSpacing(6);
    outcome->addWidget(m_outcomeIcon, 0, Qt::AlignTop);
    outcome->addWidget(m_outcome, 1);
    m_form->addRow(QString(), outcome);
}

void SyncPlaceForm::showPlace(const SyncPlace &place)
{
    m_stored = place;
    m_kind->setCurrentIndex(static_cast<int>(place.kind));
    m_folder->setText(QDir::toNativeSeparators(place.folder));
    m_server->setText(place.server.toString());
    m_user->setText(place.user);
    clearPassword();
    showRows();
}

void SyncPlaceForm::followPlace(const SyncPlace &stored)
{
    if (stored != m_stored && place() == m_stored && !password())
        showPlace(stored);
}

SyncPlace SyncPlaceForm::place() const
{
    SyncPlace place{kindChoices.at(static_cast<std::size_t>(m_kind->currentIndex())).kind};
    if (place.kind == SyncPlace::Kind::Folder) {
        const QString path = m_folder->text().trimmed();
        const bool home = path == u"~" || path.startsWith(u"~/");
        place.folder = home ? QDir::homePath() + path.mid(1) : path;
    } else if (place.kind == SyncPlace::Kind::WebDav) {
        place.server = serverFromText(m_server->text());
        place.user = m_user->text().trimmed();
    }
    return place;
}

std::optional<QString> SyncPlaceForm::password() const
{
    return m_password->text().isEmpty() ? std::nullopt : std::optional(m_password->text());
}

void SyncPlaceForm::clearPassword()
{
    m_password->clear();
    m_password->setPlaceholderText(m_stored.kind == SyncPlace::Kind::WebDav ? text("cloudSync.passwordKept"_text)
                                                                            : QString());
}

void SyncPlaceForm::setUse(Use use)
{
    for (QWidget *widget : QList<QWidget *>{m_kind, m_folderRow, m_server, m_user, m_password, m_configure})
        widget->setEnabled(use != Use::None);
    m_test->setEnabled(use == Use::All);
}

void SyncPlaceForm::showOutcome(bool good, const QString &sentence)
{
    const auto color = nsColor(good ? QStringLiteral("green") : QStringLiteral("orange"));
    const QColor ground = palette().color(QPalette::Window);
    const QColor ink = color ? toQColor(*color, palette()) : palette().color(QPalette::WindowText);
    const QString symbol =
        good ? QStringLiteral("checkmark.circle.fill") : QStringLiteral("exclamationmark.triangle.fill");
    m_outcomeIcon->setPixmap(symbolPixmap(
        symbol, iconSide, readable(ink, ground, palette().color(QPalette::WindowText), textContrast(palette())),
        devicePixelRatioF()));
    m_outcomeIcon->setVisible(!sentence.isEmpty());
    m_outcome->setText(sentence);
    m_outcome->setVisible(!sentence.isEmpty());
}

void SyncPlaceForm::chooseFolder()
{
    // The dialog looks at the folder it begins with, so none that may hang.
    const QString present = place().folder;
    const bool isAtHand = !present.isEmpty() && m_volumes.distantVolumeHolding(present).isEmpty();
    const QString start = isAtHand ? present : QDir::homePath();
    m_folderChooser->chooseFolder(text("cloudSync.chooseFolderTitle"_text), text("cloudSync.chooseFolderConfirm"_text),
                                  start, [self = QPointer<SyncPlaceForm>(this)](const QString &path) {
                                      if (!self || path.isEmpty())
                                          return;
                                      self->m_folder->setText(path);
                                      self->edited();
                                  });
}

/// What was said of what stood there before no longer counts.
void SyncPlaceForm::edited()
{
    showRows();
}

void SyncPlaceForm::showRows()
{
    const SyncPlace::Kind kind = place().kind;
    const auto show = [this](QWidget *widget, bool shown) {
        widget->setVisible(shown);
        m_form->labelForField(widget)->setVisible(shown);
    };
    show(m_folderRow, kind == SyncPlace::Kind::Folder);
    for (QWidget *widget : {m_server, m_user, m_password})
        show(widget, kind == SyncPlace::Kind::WebDav);
    const bool leaves = kind == SyncPlace::Kind::None;
    m_test->setVisible(!leaves);
    m_configure->setVisible(!leaves || m_stored.kind != SyncPlace::Kind::None);
    m_configure->setText(leaves ? text("cloudSync.stop"_text) : text("cloudSync.configure"_text));
    showOutcome(true, {});
}

} // namespace orvelle
