#include "support/CoreState.h"

#include "common/DateTimeText.h"
#include "discovery/DeviceScan.h"
#include "fan/LookupGraphScale.h"
#include "fan/LookupTable.h"
#include "link/AdapterStartUp.h"
#include "link/CommFailure.h"
#include "link/Heaters.h"
#include "link/LinkState.h"
#include "link/Traffic.h"
#include "monitor/Channels.h"
#include "monitor/Events.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"
#include "regmap/RegMapStuff.h"
#include "regmap/RegisterTree.h"

namespace ztm::test {

void ResetCoreState() {
    ResetLinkState();
    ResetAdapterStartUp();
    ResetHeaters();
    ResetTraffic();
    ResetDeviceScan();
    ResetRegisterMap();
    ResetSelectedRegister();
    ResetMonitorSettings();
    ResetMeasurements();
    ResetRecentMeasurements();
    ResetMeasurementHistory();
    ResetMeasurementLog();
    ResetEvents();
    ResetLookupGraphScale();
    ResetLookupTables();
    SetCommFailureHandler({});
    SetDateTimeSource(nullptr);
}

} // namespace ztm::test
