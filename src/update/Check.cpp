#include "BuildSettings.h"
#include "platform/base/Date.h"
#include "settings/Prefs.h"
#include "update/UpdateChecker.h"
#include "update/UpdateUtilities.h"

namespace varnith {

Ref<UpdateChecker> UpdateUtilities::checker;

void UpdateUtilities::Check(bool force) {
    const auto last_check = MakeRef<Date>();
    const std::string stored = Prefs::Value("lastupdatecheck", true, "");
    if (!stored.empty()) last_check->SetSQLDate(stored);
    checker = MakeRef<UpdateChecker>();
    if (!force && !checker->TimeToCheck(last_check)) return;
    checker->CheckNow("http://" + BuildSettings::UpdateServer + "/updates/VRNTH.txt");
    // Stored without waiting for the answer: a check that fails counts too.
    Prefs::SetValue("lastupdatecheck", true, Date().SQLDate());
}

}  // namespace varnith
