#include "ui/settings/AboutTab.h"

#include "base/Notifications.h"
#include "base/Text.h"
#include "platform/Alerts.h"
#include "platform/Clock.h"
#include "services/DebugModeManager.h"
#include "ui/common/PlainToolTip.h"
#include "ui/settings/AboutLicencesView.h"
#include "ui/settings/Sections.h"
#include "ui/settings/SymbolTile.h"
#include "ui/settings/UpdateSection.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvelle {

namespace {

constexpr int tileSide = 56;

QPushButton *namedButton(const QString &name, const QString &title, QWidget *parent)
{
    auto *button = new QPushButton(title, parent);
    button->setObjectName(name);
    return button;
}

} // namespace

AboutTab::AboutTab(const SettingsServices &services, QWidget *parent) : QWidget(parent), m_services(services)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(tabMargins());
    column->setSpacing(8);
    column->addWidget(makeHead());
    column->addSpacing(12);
    if (services.updates) {
        column->addWidget(sectionTitle(text("update.title"_text), this));
        column->addWidget(new UpdateSection(*services.updates, this));
        column->addSpacing(12);
    }
    column->addWidget(sectionTitle(text("about.data"_text), this));
    column->addWidget(makeDataSection());
    column->addSpacing(12);
    column->addWidget(sectionTitle(text("debug.title"_text), this));
    column->addWidget(sectionSubtitle(text("debug.subtitle"_text), this));
    column->addWidget(makeDebugSection());
    column->addSpacing(12);
    column->addWidget(sectionTitle(text("about.licence"_text), this));
    column->addWidget(sectionSubtitle(text("about.licenceText"_text), this));
    column->addWidget(new AboutLicencesView(this));
    column->addStretch(1);

    connect(m_enterDebug, &QPushButton::clicked, this, [this] { m_services.debugMode.toggle(); });
    connect(m_exitDebug, &QPushButton::clicked, this, [this] { m_services.debugMode.toggle(); });
    connect(m_clearDebug, &QPushButton::clicked, this, &AboutTab::askToClearDebugData);
    connect(&services.notifications, &Notifications::debugModeChanged, this, &AboutTab::refresh);
    refresh();
}

QWidget *AboutTab::makeHead()
{
    auto *head = new QWidget(this);
    auto *name = new QLabel(QStringLiteral("Orvelle"), head);
    QFont font = name->font();
    font.setPointSizeF(font.pointSizeF() * 1.8);
    font.setBold(true);
    name->setFont(font);
    const QString version = m_services.about.version + QStringLiteral(" (") + m_services.about.build + u')';
    QLabel *versionLabel = sectionSubtitle(text("about.version %@"_text, version), head);
    versionLabel->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto *manual = namedButton(QStringLiteral("openManual"), text("about.manual"_text), head);
    manual->setVisible(!m_services.about.manual.isEmpty());
    connect(manual, &QPushButton::clicked, this, &AboutTab::openManual);
    auto *welcome = namedButton(QStringLiteral("showWelcome"), text("welcome.show"_text), head);
    connect(welcome, &QPushButton::clicked, this, &AboutTab::welcomeRequested);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(name);
    texts->addWidget(versionLabel);
    auto *row = new QHBoxLayout(head);
    row->setContentsMargins({});
    row->setSpacing(16);
    row->addWidget(new SymbolTile(QStringLiteral("link"), QStringLiteral("blue"), tileSide, head));
    row->addLayout(texts, 1);
    row->addWidget(manual, 0, Qt::AlignVCenter);
    row->addWidget(welcome, 0, Qt::AlignVCenter);
    return head;
}

void AboutTab::openManual()
{
    m_services.openLink(
        LinkItem::make(QStringLiteral("Orvelle"), m_services.about.manual, LinkType::File, m_services.clock.now()));
}

QWidget *AboutTab::makeDataSection()
{
    auto *section = new QWidget(this);
    auto *form = new QFormLayout(section);
    form->setContentsMargins({});
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    const AboutInfo &about = m_services.about;
    addPlace(form, text("about.settingsPath"_text), about.settingsPath, QFileInfo(about.settingsPath).path());
    addPlace(form, text("about.dataFolder"_text), about.dataFolder, about.dataFolder);
    return section;
}

void AboutTab::addPlace(QFormLayout *form, const QString &label, const QString &path, const QString &folder)
{
    auto *pathField = new QLineEdit(path, this);
    pathField->setReadOnly(true);
    pathField->setFrame(false);
    pathField->setToolTip(plainToolTip(path));
    pathField->setAccessibleName(spokenLabel(label));
    pathField->setAccessibleDescription(path);
    QPalette flat = pathField->palette();
    flat.setColor(QPalette::Base, Qt::transparent);
    pathField->setPalette(flat);
    auto *show = new QPushButton(text("about.showFolder"_text), this);
    show->setAccessibleName(spokenLabel(show->text()) + QStringLiteral(": ") + spokenLabel(label));
    show->setEnabled(static_cast<bool>(m_services.showFolder));
    connect(show, &QPushButton::clicked, this, [this, folder] { m_services.showFolder(folder); });
    auto *row = new QHBoxLayout;
    row->addWidget(pathField, 1);
    row->addWidget(show);
    form->addRow(label, row);
}

QWidget *AboutTab::makeDebugSection()
{
    auto *section = new QWidget(this);
    m_enterDebug = namedButton(QStringLiteral("enterDebugMode"), text("debug.enterMode"_text), section);
    m_exitDebug = namedButton(QStringLiteral("exitDebugMode"), text("debug.exitMode"_text), section);
    m_clearDebug = namedButton(QStringLiteral("clearDebugData"), text("debug.clearData"_text), section);
    auto *row = new QHBoxLayout(section);
    row->setContentsMargins({});
    for (QPushButton *button : {m_enterDebug, m_exitDebug, m_clearDebug})
        row->addWidget(button);
    row->addStretch(1);
    return section;
}

void AboutTab::refresh()
{
    const bool debug = m_services.debugMode.isDebugMode();
    m_enterDebug->setEnabled(!debug);
    m_exitDebug->setEnabled(debug);
    // In debug mode the data is in use and would be written again.
    m_clearDebug->setEnabled(!debug);
}

void AboutTab::askToClearDebugData()
{
    Alert alert{Alert::Style::Warning,
                text("debug.clearTitle"_text),
                text("debug.clearMessage"_text),
                {text("debug.clear"_text), text("sheet.cancel"_text)}};
    alert.defaultButton = 1;
    m_services.alerts.show(alert, [&debugMode = m_services.debugMode](int button) {
        if (button == 0 && !debugMode.isDebugMode())
            debugMode.clearDebugData();
    });
}

} // namespace orvelle
