#include "app/UserServices.h"

#include "app/Version.h"

namespace orvelle {

UserServices::UserServices(const Surroundings &s)
    : updates({s.defaults, s.clock, s.http, s.alerts, s.workspace, s.activateApp},
              {versionText(), buildText(), updateHost()}),
      tips({s.defaults, s.clock, s.alerts, s.workspace, s.activateApp}, tipPage()),
      autostart(AutostartPlaces::ofUser()),
      launchAtLogin(autostart)
{
}

void UserServices::addTo(WidgetJobs &jobs)
{
    jobs.setServices({[this] { updates.checkForUpdatesIfNeeded(); }, [this] { tips.recordLaunch(); },
                      [this] { tips.presentTipPromptIfNeeded(); }});
}

} // namespace orvelle
