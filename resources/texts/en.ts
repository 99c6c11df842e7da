<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <message id="Abnormal">
        <translation>Abnormal</translation>
    </message>
    <message id="About">
        <translation>About KorvaleUI</translation>
    </message>
    <message id="AboutPolicy">
        <translation>Policy:</translation>
    </message>
    <message id="AboutPolicyLastUpdated">
        <translation>Policy last updated:</translation>
    </message>
    <message id="AboutVersion">
        <translation>Version %@</translation>
    </message>
    <message id="Alert">
        <translation>Alert</translation>
    </message>
    <message id="Analyzed">
        <translation>Files analyzed:</translation>
    </message>
    <message id="BTDFinishedScanningMessage">
        <translation>The background scan has finished.</translation>
    </message>
    <message id="BTDFinishedScanningTitle">
        <translation>Background scan complete</translation>
    </message>
    <message id="Blocked">
        <translation>Blocked</translation>
    </message>
    <message id="CM_CheckForPolicyUpdate">
        <translation>Check for Policy Updates</translation>
    </message>
    <message id="CM_ShowNotifications">
        <translation>Show Notifications</translation>
    </message>
    <message id="CategoryTooltip">
        <translation>How the agent classifies this item, or what it has done about it</translation>
    </message>
    <message id="CheckForUpdates">
        <translation>Check for Updates</translation>
    </message>
    <message id="ChooseFolderTitle">
        <translation>Choose a Folder to Scan</translation>
    </message>
    <message id="Company">
        <translation>Korvale</translation>
    </message>
    <message id="DefaultPolicyMode">
        <translation>Standard</translation>
    </message>
    <message id="DefaultPolicyName">
        <translation>Default</translation>
    </message>
    <message id="EventStrExploitApplication">
        <translation>Application:</translation>
    </message>
    <message id="EventStrExploitViolation">
        <translation>Violation:</translation>
    </message>
    <message id="EventStrThreat">
        <translation>Threat</translation>
    </message>
    <message id="EventThreatStringFromValueDetected">
        <translation>Detected</translation>
    </message>
    <message id="EventThreatStringFromValueNone">
        <translation>None</translation>
    </message>
    <message id="EventThreatStringFromValueRemoved">
        <translation>Removed</translation>
    </message>
    <message id="EventThreatStringFromValueRunning">
        <translation>Running</translation>
    </message>
    <message id="EventThreatStringFromValueStateChange">
        <translation>State change</translation>
    </message>
    <message id="Exit">
        <translation>Quit</translation>
    </message>
    <message id="FoundTooltip">
        <translation>Number of times this was found</translation>
    </message>
    <message id="FullAccess">
        <translation>Full access</translation>
    </message>
    <message id="HPS_Advice">
        <translation>What this means</translation>
    </message>
    <message id="HPS_ClearNotifications">
        <translation>Clear List</translation>
    </message>
    <message id="HPS_ColAction">
        <translation>Action</translation>
    </message>
    <message id="HPS_ColCategory">
        <translation>Category</translation>
    </message>
    <message id="HPS_ColDetails">
        <translation>Details</translation>
    </message>
    <message id="HPS_ColDeviceType">
        <translation>Device type</translation>
    </message>
    <message id="HPS_ColEvent">
        <translation>Event</translation>
    </message>
    <message id="HPS_ColFile">
        <translation>File</translation>
    </message>
    <message id="HPS_ColFound">
        <translation>Found</translation>
    </message>
    <message id="HPS_ColID">
        <translation>ID</translation>
    </message>
    <message id="HPS_ColPID">
        <translation>PID</translation>
    </message>
    <message id="HPS_ColProcess">
        <translation>Process</translation>
    </message>
    <message id="HPS_ColProductID">
        <translation>Product ID</translation>
    </message>
    <message id="HPS_ColSerialNumber">
        <translation>Serial number</translation>
    </message>
    <message id="HPS_ColVendorID">
        <translation>Vendor ID</translation>
    </message>
    <message id="HPS_ColWhen">
        <translation>When</translation>
    </message>
    <message id="HPS_CopyNotification">
        <translation>Copy</translation>
    </message>
    <message id="HPS_Credits">
        <translation>Details about the policy</translation>
    </message>
    <message id="HPS_EmptyAgentAway">
        <translation>The protection agent is not running, so it is not known whether anything was found.</translation>
    </message>
    <message id="HPS_EmptyDevices">
        <translation>Activity of external devices appears here.</translation>
    </message>
    <message id="HPS_EmptyEvents">
        <translation>Events that the agent records appear here.</translation>
    </message>
    <message id="HPS_EmptyExploits">
        <translation>No exploit attempts have been found.</translation>
    </message>
    <message id="HPS_EmptyFind">
        <translation>No row contains all these words. Escape shows all rows again.</translation>
    </message>
    <message id="HPS_EmptyNotRead">
        <translation>The agent has not reported yet, so it is not known whether anything was found.</translation>
    </message>
    <message id="HPS_EmptyThreats">
        <translation>No threats have been found.</translation>
    </message>
    <message id="HPS_EmptyUnreadable">
        <translation>The agent’s report cannot be read, so it is not known whether anything was found.</translation>
    </message>
    <message id="HPS_Events">
        <translation>Events</translation>
    </message>
    <message id="HPS_Exploits">
        <translation>Exploits</translation>
    </message>
    <message id="HPS_ExternalDevices">
        <translation>External Devices</translation>
    </message>
    <message id="HPS_Find">
        <translation>Find</translation>
    </message>
    <message id="HPS_FindClear">
        <translation>Show all rows</translation>
    </message>
    <message id="HPS_FindCount">
        <translation>%@ of %@</translation>
    </message>
    <message id="HPS_FindCountName">
        <translation>Rows shown</translation>
    </message>
    <message id="HPS_FindHint">
        <translation>Shows the rows that contain all these words (Ctrl+F). Escape shows all rows again.</translation>
    </message>
    <message id="HPS_HeaderHint">
        <translation>Space sorts by this column. The Menu key moves it.</translation>
    </message>
    <message id="HPS_LastScan">
        <translation>Last background scan ended: %@</translation>
    </message>
    <message id="HPS_LastScanName">
        <translation>Last background scan</translation>
    </message>
    <message id="HPS_Logo">
        <translation>Korvale logo</translation>
    </message>
    <message id="HPS_LogoToolTip">
        <translation>Visit the Korvale home page</translation>
    </message>
    <message id="HPS_Menu">
        <translation>Menu</translation>
    </message>
    <message id="HPS_MenuToolTip">
        <translation>Open the KorvaleUI menu</translation>
    </message>
    <message id="HPS_NoNotifications">
        <translation>No notifications yet.</translation>
    </message>
    <message id="HPS_NotificationHeldBack">
        <translation>Not shown, as notifications are switched off.</translation>
    </message>
    <message id="HPS_Notifications">
        <translation>Notifications</translation>
    </message>
    <message id="HPS_NotificationsHint">
        <translation>Shows what the last notifications said (Ctrl+N)</translation>
    </message>
    <message id="HPS_NowAgentAway">
        <translation>Nothing on this device is being watched until the agent runs again, and what is shown here is what was known last. Restart the device, or ask your administrator to start the agent’s service.</translation>
    </message>
    <message id="HPS_NowConnectionUnknown">
        <translation>The agent has not said whether it is connected, so it may work with what it knew last. Nothing has to be done; if this stays for hours, check the network connection.</translation>
    </message>
    <message id="HPS_NowDriverMissing">
        <translation>Without its driver the agent cannot watch files as they are opened. Restart the device; if that does not help, tell your administrator: the driver may not fit the present kernel.</translation>
    </message>
    <message id="HPS_NowExploits">
        <translation>Open the Exploits tab: it says which program was attacked and whether the agent stopped it. Close that program, bring it up to date, and tell your administrator.</translation>
    </message>
    <message id="HPS_NowNotReported">
        <translation>It is not known yet whether anything was found. The agent reports after its first look at the device; a background scan asks it to look.</translation>
    </message>
    <message id="HPS_NowOffline">
        <translation>The agent protects with what it knew last. Check the network connection; if other programs reach the network, tell your administrator.</translation>
    </message>
    <message id="HPS_NowThreats">
        <translation>Open the Threats tab: it says of each file what the agent has done. Do not open a file that is not quarantined; tell your administrator of it, also when you think that it is a false alarm.</translation>
    </message>
    <message id="HPS_NowUnconfirmed">
        <translation>The agent is running and has something to report. Wait a moment; if this stays, restart the device.</translation>
    </message>
    <message id="HPS_NowUnreadable">
        <translation>It is not known whether anything was found. The disk may be full or a file damaged: make room, then restart the device, or tell your administrator.</translation>
    </message>
    <message id="HPS_ProtectionState">
        <translation>Protection state</translation>
    </message>
    <message id="HPS_Quarantined">
        <translation>Quarantined:</translation>
    </message>
    <message id="HPS_SortedAscending">
        <translation>sorted ascending</translation>
    </message>
    <message id="HPS_SortedDescending">
        <translation>sorted descending</translation>
    </message>
    <message id="HPS_StatusLine">
        <translation>Agent status</translation>
    </message>
    <message id="HPS_StatusNoAnswer">
        <translation>KorvaleUI does not answer</translation>
    </message>
    <message id="HPS_StatusNotRunning">
        <translation>KorvaleUI is not running</translation>
    </message>
    <message id="HPS_StatusUsage">
        <translation>Wrong use: --status with --json, --bar waybar or --bar i3status-rs, and with --watch; see --help.</translation>
    </message>
    <message id="HPS_TableHint">
        <translation>Enter shows the details of a row. Ctrl+C copies the selected rows. Shift+F1 tells more about a cell.</translation>
    </message>
    <message id="HPS_Tabs">
        <translation>Findings</translation>
    </message>
    <message id="HPS_TermBackground">
        <translation>The agent has begun the background scan.</translation>
    </message>
    <message id="HPS_TermFound">
        <translation>Threats found: %@</translation>
    </message>
    <message id="HPS_TermGoesOn">
        <translation>The agent goes on with the scan; --background-scan stop ends it.</translation>
    </message>
    <message id="HPS_TermLeft">
        <translation>The agent has ended before it was done.</translation>
    </message>
    <message id="HPS_TermMore">
        <translation>… and %@ more</translation>
    </message>
    <message id="HPS_TermNoAgent">
        <translation>No agent is running.</translation>
    </message>
    <message id="HPS_TermNoAnswer">
        <translation>The agent does not answer.</translation>
    </message>
    <message id="HPS_TermNoFolder">
        <translation>%@ is no folder that can be scanned: %@</translation>
    </message>
    <message id="HPS_TermNoUpdater">
        <translation>The updater has said nothing.</translation>
    </message>
    <message id="HPS_TermNotUnderstood">
        <translation>The agent’s answer cannot be understood.</translation>
    </message>
    <message id="HPS_TermNotUtf8">
        <translation>%@ cannot be scanned: its name is not valid UTF-8.</translation>
    </message>
    <message id="HPS_TermNothing">
        <translation>The agent reported no threat.</translation>
    </message>
    <message id="HPS_TermRefused">
        <translation>The agent refused: %@</translation>
    </message>
    <message id="HPS_TermSays">
        <translation>The agent says: %@</translation>
    </message>
    <message id="HPS_TermScan">
        <translation>The agent scans %@</translation>
    </message>
    <message id="HPS_TermScanName">
        <translation>Scan for threats</translation>
    </message>
    <message id="HPS_TermSilent">
        <translation>The agent has said nothing for five minutes.</translation>
    </message>
    <message id="HPS_TermStop">
        <translation>The agent stops its scans.</translation>
    </message>
    <message id="HPS_TermStopped">
        <translation>No scan is running any more.</translation>
    </message>
    <message id="HPS_TermUpdates">
        <translation>The agent looks for updates.</translation>
    </message>
    <message id="HPS_TermUsage">
        <translation>Wrong use: --check-updates, --scan FOLDER… or --background-scan start or stop; see --help.</translation>
    </message>
    <message id="HPS_Threats">
        <translation>Threats</translation>
    </message>
    <message id="HPS_WhatNow">
        <translation>What does this mean?</translation>
    </message>
    <message id="HPS_WhyAgentAway">
        <translation>The protection agent is not running</translation>
    </message>
    <message id="HPS_WhyConnectionUnknown">
        <translation>The agent is running; nothing new was found</translation>
    </message>
    <message id="HPS_WhyDriverMissing">
        <translation>The agent’s driver is missing</translation>
    </message>
    <message id="HPS_WhyExploit">
        <translation>One exploit attempt has not been looked at</translation>
    </message>
    <message id="HPS_WhyExploits">
        <translation>%@ exploit attempts have not been looked at</translation>
    </message>
    <message id="HPS_WhyGood">
        <translation>Connected; nothing new was found</translation>
    </message>
    <message id="HPS_WhyNotReported">
        <translation>The agent has not reported yet</translation>
    </message>
    <message id="HPS_WhyOffline">
        <translation>The protection agent is not connected</translation>
    </message>
    <message id="HPS_WhyThreat">
        <translation>One threat has not been looked at</translation>
    </message>
    <message id="HPS_WhyThreatOffline">
        <translation>Not connected; one threat has not been looked at</translation>
    </message>
    <message id="HPS_WhyThreats">
        <translation>%@ threats have not been looked at</translation>
    </message>
    <message id="HPS_WhyThreatsOffline">
        <translation>Not connected; %@ threats have not been looked at</translation>
    </message>
    <message id="HPS_WhyUnconfirmed">
        <translation>The present state has not been confirmed yet</translation>
    </message>
    <message id="HPS_WhyUnreadable">
        <translation>The agent’s report cannot be read</translation>
    </message>
    <message id="Ignored">
        <translation>Ignored</translation>
    </message>
    <message id="Inspecting">
        <translation>Inspecting</translation>
    </message>
    <message id="KorvaleSONDAR">
        <translation>Korvale SONDAR</translation>
    </message>
    <message id="NoDriver">
        <translation>The protection driver is not connected</translation>
    </message>
    <message id="NoNetwork">
        <translation>No network connection</translation>
    </message>
    <message id="NotRunning">
        <translation>The protection agent is not running</translation>
    </message>
    <message id="NotificationActionOpenLink">
        <translation>Open Link</translation>
    </message>
    <message id="NotificationMessageAbnormalDetected">
        <translation>%@ was identified as abnormal.</translation>
    </message>
    <message id="NotificationMessageAbnormalQuarantined">
        <translation>%@ was identified as abnormal and quarantined.</translation>
    </message>
    <message id="NotificationMessageAbnormalsDetected">
        <translation>%@ files were identified as abnormal.</translation>
    </message>
    <message id="NotificationMessageAbnormalsQuarantined">
        <translation>%@ files were identified as abnormal and quarantined.</translation>
    </message>
    <message id="NotificationMessageExploitDetectedPID">
        <translation>Exploit attempt in %@ (process %@): %@</translation>
    </message>
    <message id="NotificationMessageNewExploit">
        <translation>Several new exploit attempts were detected.</translation>
    </message>
    <message id="NotificationMessagePolicyExpired">
        <translation>The protection policy of this device has expired. Contact your administrator.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidCompanyId">
        <translation>The protection policy was issued for another company. Contact your administrator.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidSignature">
        <translation>The signature of the protection policy is not valid. Contact your administrator.</translation>
    </message>
    <message id="NotificationMessageUnsafeDetected">
        <translation>%@ was identified as unsafe.</translation>
    </message>
    <message id="NotificationMessageUnsafeQuarantined">
        <translation>%@ was identified as unsafe and quarantined.</translation>
    </message>
    <message id="NotificationMessageUnsafesDetected">
        <translation>%@ files were identified as unsafe.</translation>
    </message>
    <message id="NotificationMessageUnsafesQuarantined">
        <translation>%@ files were identified as unsafe and quarantined.</translation>
    </message>
    <message id="NotificationSubtitleAbnormalDetected">
        <translation>Abnormal file detected</translation>
    </message>
    <message id="NotificationSubtitleAbnormalQuarantined">
        <translation>Abnormal file quarantined</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsDetected">
        <translation>Abnormal files detected</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsQuarantined">
        <translation>Abnormal files quarantined</translation>
    </message>
    <message id="NotificationSubtitleExecutionBlock">
        <translation>Execution blocked</translation>
    </message>
    <message id="NotificationSubtitleExploitAttemptDetected">
        <translation>Exploit attempt detected</translation>
    </message>
    <message id="NotificationSubtitlePolicyExpired">
        <translation>Policy expired</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidCompanyId">
        <translation>Policy of another company</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidSignature">
        <translation>Policy signature not valid</translation>
    </message>
    <message id="NotificationSubtitleProcessActionBlocked">
        <translation>Process action blocked</translation>
    </message>
    <message id="NotificationSubtitleProcessTerminated">
        <translation>Process terminated</translation>
    </message>
    <message id="NotificationSubtitleUnsafeDetected">
        <translation>Unsafe file detected</translation>
    </message>
    <message id="NotificationSubtitleUnsafeQuarantined">
        <translation>Unsafe file quarantined</translation>
    </message>
    <message id="NotificationSubtitleUnsafesDetected">
        <translation>Unsafe files detected</translation>
    </message>
    <message id="NotificationSubtitleUnsafesQuarantined">
        <translation>Unsafe files quarantined</translation>
    </message>
    <message id="OfflineMode">
        <translation>Offline</translation>
    </message>
    <message id="ProductEP">
        <translation>Korvale Endpoint Protection</translation>
    </message>
    <message id="Quarantined">
        <translation>Quarantined</translation>
    </message>
    <message id="Safe">
        <translation>Safe</translation>
    </message>
    <message id="ShowDetailsMenu">
        <translation>Show Details</translation>
    </message>
    <message id="TM_All">
        <translation>Everything</translation>
    </message>
    <message id="TM_Background">
        <translation>Scan in Background</translation>
    </message>
    <message id="TM_Detection">
        <translation>Detection</translation>
    </message>
    <message id="TM_Error">
        <translation>Errors</translation>
    </message>
    <message id="TM_Folder">
        <translation>Scan a Folder…</translation>
    </message>
    <message id="TM_Information">
        <translation>Information</translation>
    </message>
    <message id="TM_Logging">
        <translation>Log Level</translation>
    </message>
    <message id="TM_Stop">
        <translation>Stop Scan</translation>
    </message>
    <message id="TM_Warning">
        <translation>Warnings</translation>
    </message>
    <message id="Terminated">
        <translation>Terminated</translation>
    </message>
    <message id="Unknown">
        <translation>Unknown</translation>
    </message>
    <message id="Unsafe">
        <translation>Unsafe</translation>
    </message>
    <message id="Url">
        <translation>https://korvale.example/</translation>
    </message>
    <message id="Waived">
        <translation>Waived</translation>
    </message>
</context>
<context>
    <message id="HPS_Cancel">
        <translation>Cancel</translation>
    </message>
    <message id="HPS_Close">
        <translation>Close</translation>
    </message>
    <message id="HPS_Export">
        <translation>Export…</translation>
    </message>
    <message id="HPS_ExportCancelled">
        <translation>The export was cancelled. What was at “%@” is unchanged.</translation>
    </message>
    <message id="HPS_ExportDone">
        <translation>Rows written to “%@”: %@</translation>
    </message>
    <message id="HPS_ExportFailed">
        <translation>“%@” could not be written: %@</translation>
    </message>
    <message id="HPS_ExportHint">
        <translation>Writes the shown or the selected rows to a CSV or JSON file (Ctrl+S).</translation>
    </message>
    <message id="HPS_ExportNoFile">
        <translation>“%@” is not an ordinary file on this machine. Nothing was written.</translation>
    </message>
    <message id="HPS_ExportNoRoom">
        <translation>There is no room for “%@” on its disk. What was there is unchanged.</translation>
    </message>
    <message id="HPS_ExportRuns">
        <translation>Writing “%@”</translation>
    </message>
    <message id="HPS_ExportSelected">
        <translation>Selected rows (%@) as %@…</translation>
    </message>
    <message id="HPS_ExportShown">
        <translation>Shown rows (%@) as %@…</translation>
    </message>
    <message id="HPS_ExportTitle">
        <translation>Export the Table</translation>
    </message>
</context>
<context>
    <message id="HPS_MoveColumnLeft">
        <translation>Move Column Left</translation>
    </message>
    <message id="HPS_MoveColumnRight">
        <translation>Move Column Right</translation>
    </message>
    <message id="HPS_ResetOrder">
        <translation>Original Order of Columns and Rows</translation>
    </message>
</context>
<context>
    <!-- DetailsPane -->
    <message id="HPS_ColScore">
        <translation>Score</translation>
    </message>
    <message id="HPS_DoAbnormal">
        <translation>Do not open it unless you know where it comes from. Your administrator can quarantine it, or waive it if it is a false alarm.</translation>
    </message>
    <message id="HPS_DoAlert">
        <translation>Close the program, bring it up to date and tell your administrator, who can also judge whether it is a false alarm.</translation>
    </message>
    <message id="HPS_DoDeviceAllowed">
        <translation>Nothing has to be done. If the device is not yours, unplug it and tell your administrator.</translation>
    </message>
    <message id="HPS_DoDeviceBlocked">
        <translation>If you need it, ask your administrator to allow it and pass on what stands here.</translation>
    </message>
    <message id="HPS_DoEvent">
        <translation>Look for the file in the Threats tab: it says what has become of it, and what to do. If it is no longer there, nothing has to be done.</translation>
    </message>
    <message id="HPS_DoQuarantined">
        <translation>Nothing has to be done. If it is a false alarm, your administrator can put the file back and waive it.</translation>
    </message>
    <message id="HPS_DoStopped">
        <translation>Bring the program up to date. If it no longer works because of this, tell your administrator: it may be a false alarm.</translation>
    </message>
    <message id="HPS_DoUnknown">
        <translation>Bring KorvaleUI up to date, or ask your administrator what it means.</translation>
    </message>
    <message id="HPS_DoUnsafe">
        <translation>Do not open it. Tell your administrator, who can quarantine it, or waive it if it is a false alarm.</translation>
    </message>
    <message id="HPS_DoWaived">
        <translation>Nothing has to be done. If nobody you know has decided that, tell your administrator.</translation>
    </message>
    <message id="HPS_MeansAbnormal">
        <translation>This file looks like harmful ones, but is not known to be one. It is still where it was found.</translation>
    </message>
    <message id="HPS_MeansAlert">
        <translation>The agent has seen that this program is being attacked, and has let it run on.</translation>
    </message>
    <message id="HPS_MeansBlocked">
        <translation>The agent has stopped an attack on this program, which runs on.</translation>
    </message>
    <message id="HPS_MeansChanged">
        <translation>The agent judges this file otherwise than before.</translation>
    </message>
    <message id="HPS_MeansDetected">
        <translation>The agent found this file at that time and judged it to be a threat.</translation>
    </message>
    <message id="HPS_MeansDeviceAllowed">
        <translation>The policy allows this device: it can be used here.</translation>
    </message>
    <message id="HPS_MeansDeviceBlocked">
        <translation>The policy does not allow this device: it cannot be used here.</translation>
    </message>
    <message id="HPS_MeansIgnored">
        <translation>The agent has seen something here that it was told to ignore.</translation>
    </message>
    <message id="HPS_MeansQuarantined">
        <translation>The agent has taken this file away and keeps it where it can do no harm.</translation>
    </message>
    <message id="HPS_MeansRemoved">
        <translation>This file has been removed from the device.</translation>
    </message>
    <message id="HPS_MeansTerminated">
        <translation>The agent has ended this program because it was being attacked.</translation>
    </message>
    <message id="HPS_MeansUnknown">
        <translation>The agent reports a state that this version of KorvaleUI does not know.</translation>
    </message>
    <message id="HPS_MeansUnsafe">
        <translation>The agent judges this file to be harmful. It is still where it was found.</translation>
    </message>
    <message id="HPS_MeansWaived">
        <translation>Somebody has decided that this file may stay, so the agent leaves it alone.</translation>
    </message>
    <message id="HPS_PaneClose">
        <translation>Close the details</translation>
    </message>
    <message id="HPS_PaneCopy">
        <translation>Copy</translation>
    </message>
    <message id="HPS_PaneCopyPath">
        <translation>Copy Path</translation>
    </message>
    <message id="HPS_PaneCut">
        <translation>Very long texts are shortened here; “Copy” has them whole.</translation>
    </message>
    <message id="HPS_PaneDo">
        <translation>What to do</translation>
    </message>
    <message id="HPS_PaneGone">
        <translation>This row is no longer in the table. Below is what it said last.</translation>
    </message>
    <message id="HPS_PaneMeans">
        <translation>Meaning</translation>
    </message>
    <message id="HPS_PaneMore">
        <translation>… and %@ more; “Copy Path” copies them all.</translation>
    </message>
    <message id="HPS_PaneNoManager">
        <translation>No file manager could be opened.</translation>
    </message>
    <message id="HPS_PanePath">
        <translation>Path</translation>
    </message>
    <message id="HPS_PaneSelectAll">
        <translation>Select All</translation>
    </message>
    <message id="HPS_PaneShow">
        <translation>Show in File Manager</translation>
    </message>
</context>
</TS>
