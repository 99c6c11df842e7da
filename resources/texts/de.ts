<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <message id="Abnormal">
        <translation>Auffällig</translation>
    </message>
    <message id="About">
        <translation>Über KorvaleUI</translation>
    </message>
    <message id="AboutPolicy">
        <translation>Richtlinie:</translation>
    </message>
    <message id="AboutPolicyLastUpdated">
        <translation>Richtlinie zuletzt aktualisiert:</translation>
    </message>
    <message id="AboutVersion">
        <translation>Version %@</translation>
    </message>
    <message id="Alert">
        <translation>Warnung</translation>
    </message>
    <message id="Analyzed">
        <translation>Analysierte Dateien:</translation>
    </message>
    <message id="BTDFinishedScanningMessage">
        <translation>Die Hintergrundprüfung ist abgeschlossen.</translation>
    </message>
    <message id="BTDFinishedScanningTitle">
        <translation>Hintergrundprüfung abgeschlossen</translation>
    </message>
    <message id="Blocked">
        <translation>Blockiert</translation>
    </message>
    <message id="CM_CheckForPolicyUpdate">
        <translation>Nach Richtlinien-Updates suchen</translation>
    </message>
    <message id="CM_ShowNotifications">
        <translation>Benachrichtigungen anzeigen</translation>
    </message>
    <message id="CategoryTooltip">
        <translation>Wie der Agent diesen Eintrag einstuft oder wie er ihn behandelt hat</translation>
    </message>
    <message id="CheckForUpdates">
        <translation>Nach Updates suchen</translation>
    </message>
    <message id="ChooseFolderTitle">
        <translation>Zu prüfenden Ordner auswählen</translation>
    </message>
    <message id="Company">
        <translation>Korvale</translation>
    </message>
    <message id="DefaultPolicyMode">
        <translation>Standard</translation>
    </message>
    <message id="DefaultPolicyName">
        <translation>Standardrichtlinie</translation>
    </message>
    <message id="EventStrExploitApplication">
        <translation>Anwendung:</translation>
    </message>
    <message id="EventStrExploitViolation">
        <translation>Verstoß:</translation>
    </message>
    <message id="EventStrThreat">
        <translation>Bedrohung</translation>
    </message>
    <message id="EventThreatStringFromValueDetected">
        <translation>Erkannt</translation>
    </message>
    <message id="EventThreatStringFromValueNone">
        <translation>Keine</translation>
    </message>
    <message id="EventThreatStringFromValueRemoved">
        <translation>Entfernt</translation>
    </message>
    <message id="EventThreatStringFromValueRunning">
        <translation>Aktiv</translation>
    </message>
    <message id="EventThreatStringFromValueStateChange">
        <translation>Statusänderung</translation>
    </message>
    <message id="Exit">
        <translation>Beenden</translation>
    </message>
    <message id="FoundTooltip">
        <translation>Anzahl der Funde</translation>
    </message>
    <message id="FullAccess">
        <translation>Vollzugriff</translation>
    </message>
    <message id="HPS_Advice">
        <translation>Was das bedeutet</translation>
    </message>
    <message id="HPS_ClearNotifications">
        <translation>Liste leeren</translation>
    </message>
    <message id="HPS_ColAction">
        <translation>Aktion</translation>
    </message>
    <message id="HPS_ColCategory">
        <translation>Kategorie</translation>
    </message>
    <message id="HPS_ColDetails">
        <translation>Details</translation>
    </message>
    <message id="HPS_ColDeviceType">
        <translation>Gerätetyp</translation>
    </message>
    <message id="HPS_ColEvent">
        <translation>Ereignis</translation>
    </message>
    <message id="HPS_ColFile">
        <translation>Datei</translation>
    </message>
    <message id="HPS_ColFound">
        <translation>Gefunden</translation>
    </message>
    <message id="HPS_ColID">
        <translation>ID</translation>
    </message>
    <message id="HPS_ColPID">
        <translation>PID</translation>
    </message>
    <message id="HPS_ColProcess">
        <translation>Prozess</translation>
    </message>
    <message id="HPS_ColProductID">
        <translation>Produkt-ID</translation>
    </message>
    <message id="HPS_ColSerialNumber">
        <translation>Seriennummer</translation>
    </message>
    <message id="HPS_ColVendorID">
        <translation>Hersteller-ID</translation>
    </message>
    <message id="HPS_ColWhen">
        <translation>Zeitpunkt</translation>
    </message>
    <message id="HPS_CopyNotification">
        <translation>Kopieren</translation>
    </message>
    <message id="HPS_Credits">
        <translation>Angaben zur Richtlinie</translation>
    </message>
    <message id="HPS_EmptyAgentAway">
        <translation>Der Schutzagent läuft nicht. Ob etwas gefunden wurde, ist daher nicht bekannt.</translation>
    </message>
    <message id="HPS_EmptyDevices">
        <translation>Hier erscheinen Aktivitäten externer Geräte.</translation>
    </message>
    <message id="HPS_EmptyEvents">
        <translation>Hier erscheinen Ereignisse, die der Agent aufzeichnet.</translation>
    </message>
    <message id="HPS_EmptyExploits">
        <translation>Es wurden keine Exploit-Versuche gefunden.</translation>
    </message>
    <message id="HPS_EmptyFind">
        <translation>Keine Zeile enthält alle diese Wörter. Escape zeigt wieder alle Zeilen.</translation>
    </message>
    <message id="HPS_EmptyNotRead">
        <translation>Der Agent hat noch nichts gemeldet. Ob etwas gefunden wurde, ist daher nicht bekannt.</translation>
    </message>
    <message id="HPS_EmptyThreats">
        <translation>Es wurden keine Bedrohungen gefunden.</translation>
    </message>
    <message id="HPS_EmptyUnreadable">
        <translation>Der Bericht des Agenten ist nicht lesbar. Ob etwas gefunden wurde, ist daher nicht bekannt.</translation>
    </message>
    <message id="HPS_Events">
        <translation>Ereignisse</translation>
    </message>
    <message id="HPS_Exploits">
        <translation>Exploits</translation>
    </message>
    <message id="HPS_ExternalDevices">
        <translation>Externe Geräte</translation>
    </message>
    <message id="HPS_Find">
        <translation>Suchen</translation>
    </message>
    <message id="HPS_FindClear">
        <translation>Alle Zeilen zeigen</translation>
    </message>
    <message id="HPS_FindCount">
        <translation>%@ von %@</translation>
    </message>
    <message id="HPS_FindCountName">
        <translation>Angezeigte Zeilen</translation>
    </message>
    <message id="HPS_FindHint">
        <translation>Zeigt die Zeilen, die alle diese Wörter enthalten (Strg+F). Escape zeigt wieder alle Zeilen.</translation>
    </message>
    <message id="HPS_HeaderHint">
        <translation>Die Leertaste sortiert nach dieser Spalte. Die Menütaste verschiebt sie.</translation>
    </message>
    <message id="HPS_LastScan">
        <translation>Letzte Hintergrundprüfung endete: %@</translation>
    </message>
    <message id="HPS_LastScanName">
        <translation>Letzte Hintergrundprüfung</translation>
    </message>
    <message id="HPS_Logo">
        <translation>Korvale-Logo</translation>
    </message>
    <message id="HPS_LogoToolTip">
        <translation>Korvale-Startseite besuchen</translation>
    </message>
    <message id="HPS_Menu">
        <translation>Menü</translation>
    </message>
    <message id="HPS_MenuToolTip">
        <translation>KorvaleUI-Menü öffnen</translation>
    </message>
    <message id="HPS_NoNotifications">
        <translation>Noch keine Benachrichtigungen.</translation>
    </message>
    <message id="HPS_NotificationHeldBack">
        <translation>Nicht angezeigt, da Benachrichtigungen ausgeschaltet sind.</translation>
    </message>
    <message id="HPS_Notifications">
        <translation>Benachrichtigungen</translation>
    </message>
    <message id="HPS_NotificationsHint">
        <translation>Zeigt, was die letzten Benachrichtigungen gesagt haben (Strg+N)</translation>
    </message>
    <message id="HPS_NowAgentAway">
        <translation>Bis der Agent wieder läuft, wird auf diesem Gerät nichts überwacht; angezeigt wird, was zuletzt bekannt war. Starten Sie das Gerät neu, oder bitten Sie Ihren Administrator, den Dienst des Agenten zu starten.</translation>
    </message>
    <message id="HPS_NowConnectionUnknown">
        <translation>Der Agent hat nicht gesagt, ob er verbunden ist; vielleicht arbeitet er mit dem, was er zuletzt wusste. Es ist nichts zu tun; bleibt es stundenlang dabei, prüfen Sie die Netzwerkverbindung.</translation>
    </message>
    <message id="HPS_NowDriverMissing">
        <translation>Ohne seinen Treiber kann der Agent Dateien nicht beim Öffnen überwachen. Starten Sie das Gerät neu; hilft das nicht, wenden Sie sich an Ihren Administrator: Der Treiber passt vielleicht nicht zum jetzigen Kernel.</translation>
    </message>
    <message id="HPS_NowExploits">
        <translation>Öffnen Sie den Reiter „Exploits“: Dort steht, welches Programm angegriffen wurde und ob der Agent es angehalten hat. Schließen Sie dieses Programm, aktualisieren Sie es, und informieren Sie Ihren Administrator.</translation>
    </message>
    <message id="HPS_NowNotReported">
        <translation>Ob etwas gefunden wurde, ist noch nicht bekannt. Der Agent berichtet, wenn er das Gerät zum ersten Mal geprüft hat; eine Hintergrundprüfung fordert ihn dazu auf.</translation>
    </message>
    <message id="HPS_NowOffline">
        <translation>Der Agent schützt mit dem, was er zuletzt wusste. Prüfen Sie die Netzwerkverbindung; erreichen andere Programme das Netz, informieren Sie Ihren Administrator.</translation>
    </message>
    <message id="HPS_NowThreats">
        <translation>Öffnen Sie den Reiter „Bedrohungen“: Dort steht zu jeder Datei, was der Agent getan hat. Öffnen Sie keine Datei, die nicht in Quarantäne ist; melden Sie sie Ihrem Administrator, auch wenn Sie sie für einen Fehlalarm halten.</translation>
    </message>
    <message id="HPS_NowUnconfirmed">
        <translation>Der Agent läuft, sein nächster Bericht steht noch aus. Warten Sie einen Moment; bleibt es dabei, starten Sie das Gerät neu.</translation>
    </message>
    <message id="HPS_NowUnreadable">
        <translation>Es ist nicht bekannt, ob etwas gefunden wurde. Vielleicht ist der Datenträger voll oder eine Datei beschädigt: Schaffen Sie Platz und starten Sie das Gerät neu, oder informieren Sie Ihren Administrator.</translation>
    </message>
    <message id="HPS_ProtectionState">
        <translation>Schutzstatus</translation>
    </message>
    <message id="HPS_Quarantined">
        <translation>In Quarantäne:</translation>
    </message>
    <message id="HPS_SortedAscending">
        <translation>aufsteigend sortiert</translation>
    </message>
    <message id="HPS_SortedDescending">
        <translation>absteigend sortiert</translation>
    </message>
    <message id="HPS_StatusLine">
        <translation>Status des Agenten</translation>
    </message>
    <message id="HPS_StatusNoAnswer">
        <translation>KorvaleUI antwortet nicht</translation>
    </message>
    <message id="HPS_StatusNotRunning">
        <translation>KorvaleUI läuft nicht</translation>
    </message>
    <message id="HPS_StatusUsage">
        <translation>Falsch aufgerufen: --status mit --json, --bar waybar oder --bar i3status-rs, und mit --watch; siehe --help.</translation>
    </message>
    <message id="HPS_TableHint">
        <translation>Die Eingabetaste zeigt die Details einer Zeile. Strg+C kopiert die ausgewählten Zeilen. Umschalt+F1 sagt mehr über eine Zelle.</translation>
    </message>
    <message id="HPS_Tabs">
        <translation>Funde</translation>
    </message>
    <message id="HPS_TermBackground">
        <translation>Der Agent hat die Hintergrundprüfung begonnen.</translation>
    </message>
    <message id="HPS_TermFound">
        <translation>Gefundene Bedrohungen: %@</translation>
    </message>
    <message id="HPS_TermGoesOn">
        <translation>Der Agent prüft weiter; --background-scan stop beendet das.</translation>
    </message>
    <message id="HPS_TermLeft">
        <translation>Der Agent hat sich beendet, bevor er fertig war.</translation>
    </message>
    <message id="HPS_TermMore">
        <translation>… und %@ weitere</translation>
    </message>
    <message id="HPS_TermNoAgent">
        <translation>Es läuft kein Agent.</translation>
    </message>
    <message id="HPS_TermNoAnswer">
        <translation>Der Agent antwortet nicht.</translation>
    </message>
    <message id="HPS_TermNoFolder">
        <translation>%@ ist kein Ordner, der geprüft werden kann: %@</translation>
    </message>
    <message id="HPS_TermNoUpdater">
        <translation>Der Updater hat nichts gesagt.</translation>
    </message>
    <message id="HPS_TermNotUnderstood">
        <translation>Die Antwort des Agenten ist nicht zu verstehen.</translation>
    </message>
    <message id="HPS_TermNotUtf8">
        <translation>%@ kann nicht geprüft werden: Der Name ist kein gültiges UTF-8.</translation>
    </message>
    <message id="HPS_TermNothing">
        <translation>Der Agent hat keine Bedrohung gemeldet.</translation>
    </message>
    <message id="HPS_TermRefused">
        <translation>Der Agent hat abgelehnt: %@</translation>
    </message>
    <message id="HPS_TermSays">
        <translation>Der Agent sagt: %@</translation>
    </message>
    <message id="HPS_TermScan">
        <translation>Der Agent prüft %@</translation>
    </message>
    <message id="HPS_TermScanName">
        <translation>Auf Bedrohungen prüfen</translation>
    </message>
    <message id="HPS_TermSilent">
        <translation>Der Agent hat seit fünf Minuten nichts gesagt.</translation>
    </message>
    <message id="HPS_TermStop">
        <translation>Der Agent beendet seine Prüfungen.</translation>
    </message>
    <message id="HPS_TermStopped">
        <translation>Es läuft keine Prüfung mehr.</translation>
    </message>
    <message id="HPS_TermUpdates">
        <translation>Der Agent sucht nach Updates.</translation>
    </message>
    <message id="HPS_TermUsage">
        <translation>Falsch aufgerufen: --check-updates, --scan ORDNER… oder --background-scan start oder stop; siehe --help.</translation>
    </message>
    <message id="HPS_Threats">
        <translation>Bedrohungen</translation>
    </message>
    <message id="HPS_WhatNow">
        <translation>Was bedeutet das?</translation>
    </message>
    <message id="HPS_WhyAgentAway">
        <translation>Der Schutzagent läuft nicht</translation>
    </message>
    <message id="HPS_WhyConnectionUnknown">
        <translation>Der Agent läuft; nichts Neues wurde gefunden</translation>
    </message>
    <message id="HPS_WhyDriverMissing">
        <translation>Der Treiber des Agenten fehlt</translation>
    </message>
    <message id="HPS_WhyExploit">
        <translation>Ein Exploit-Versuch wurde noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyExploits">
        <translation>%@ Exploit-Versuche wurden noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyGood">
        <translation>Verbunden; nichts Neues wurde gefunden</translation>
    </message>
    <message id="HPS_WhyNotReported">
        <translation>Der Agent hat noch nicht berichtet</translation>
    </message>
    <message id="HPS_WhyOffline">
        <translation>Der Schutzagent ist nicht verbunden</translation>
    </message>
    <message id="HPS_WhyThreat">
        <translation>Eine Bedrohung wurde noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyThreatOffline">
        <translation>Nicht verbunden; eine Bedrohung wurde noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyThreats">
        <translation>%@ Bedrohungen wurden noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyThreatsOffline">
        <translation>Nicht verbunden; %@ Bedrohungen wurden noch nicht angesehen</translation>
    </message>
    <message id="HPS_WhyUnconfirmed">
        <translation>Der jetzige Zustand ist noch nicht bestätigt</translation>
    </message>
    <message id="HPS_WhyUnreadable">
        <translation>Der Bericht des Agenten ist nicht lesbar</translation>
    </message>
    <message id="Ignored">
        <translation>Ignoriert</translation>
    </message>
    <message id="Inspecting">
        <translation>Wird untersucht:</translation>
    </message>
    <message id="KorvaleSONDAR">
        <translation>Korvale SONDAR</translation>
    </message>
    <message id="NoDriver">
        <translation>Der Schutztreiber ist nicht verbunden</translation>
    </message>
    <message id="NoNetwork">
        <translation>Keine Netzwerkverbindung</translation>
    </message>
    <message id="NotRunning">
        <translation>Der Schutzagent wird nicht ausgeführt</translation>
    </message>
    <message id="NotificationActionOpenLink">
        <translation>Link öffnen</translation>
    </message>
    <message id="NotificationMessageAbnormalDetected">
        <translation>%@ wurde als auffällig erkannt.</translation>
    </message>
    <message id="NotificationMessageAbnormalQuarantined">
        <translation>%@ wurde als auffällig erkannt und in Quarantäne verschoben.</translation>
    </message>
    <message id="NotificationMessageAbnormalsDetected">
        <translation>%@ Dateien wurden als auffällig erkannt.</translation>
    </message>
    <message id="NotificationMessageAbnormalsQuarantined">
        <translation>%@ Dateien wurden als auffällig erkannt und in Quarantäne verschoben.</translation>
    </message>
    <message id="NotificationMessageExploitDetectedPID">
        <translation>Exploit-Versuch in %@ (Prozess %@): %@</translation>
    </message>
    <message id="NotificationMessageNewExploit">
        <translation>Mehrere neue Exploit-Versuche wurden erkannt.</translation>
    </message>
    <message id="NotificationMessagePolicyExpired">
        <translation>Die Schutzrichtlinie dieses Geräts ist abgelaufen. Wenden Sie sich an Ihren Administrator.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidCompanyId">
        <translation>Die Schutzrichtlinie wurde für ein anderes Unternehmen ausgestellt. Wenden Sie sich an Ihren Administrator.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidSignature">
        <translation>Die Signatur der Schutzrichtlinie ist ungültig. Wenden Sie sich an Ihren Administrator.</translation>
    </message>
    <message id="NotificationMessageUnsafeDetected">
        <translation>%@ wurde als unsicher erkannt.</translation>
    </message>
    <message id="NotificationMessageUnsafeQuarantined">
        <translation>%@ wurde als unsicher erkannt und in Quarantäne verschoben.</translation>
    </message>
    <message id="NotificationMessageUnsafesDetected">
        <translation>%@ Dateien wurden als unsicher erkannt.</translation>
    </message>
    <message id="NotificationMessageUnsafesQuarantined">
        <translation>%@ Dateien wurden als unsicher erkannt und in Quarantäne verschoben.</translation>
    </message>
    <message id="NotificationSubtitleAbnormalDetected">
        <translation>Auffällige Datei erkannt</translation>
    </message>
    <message id="NotificationSubtitleAbnormalQuarantined">
        <translation>Auffällige Datei in Quarantäne</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsDetected">
        <translation>Auffällige Dateien erkannt</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsQuarantined">
        <translation>Auffällige Dateien in Quarantäne</translation>
    </message>
    <message id="NotificationSubtitleExecutionBlock">
        <translation>Ausführung blockiert</translation>
    </message>
    <message id="NotificationSubtitleExploitAttemptDetected">
        <translation>Exploit-Versuch erkannt</translation>
    </message>
    <message id="NotificationSubtitlePolicyExpired">
        <translation>Richtlinie abgelaufen</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidCompanyId">
        <translation>Richtlinie eines anderen Unternehmens</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidSignature">
        <translation>Ungültige Richtliniensignatur</translation>
    </message>
    <message id="NotificationSubtitleProcessActionBlocked">
        <translation>Prozessaktion blockiert</translation>
    </message>
    <message id="NotificationSubtitleProcessTerminated">
        <translation>Prozess beendet</translation>
    </message>
    <message id="NotificationSubtitleUnsafeDetected">
        <translation>Unsichere Datei erkannt</translation>
    </message>
    <message id="NotificationSubtitleUnsafeQuarantined">
        <translation>Unsichere Datei in Quarantäne</translation>
    </message>
    <message id="NotificationSubtitleUnsafesDetected">
        <translation>Unsichere Dateien erkannt</translation>
    </message>
    <message id="NotificationSubtitleUnsafesQuarantined">
        <translation>Unsichere Dateien in Quarantäne</translation>
    </message>
    <message id="OfflineMode">
        <translation>Offline</translation>
    </message>
    <message id="ProductEP">
        <translation>Korvale Endpoint Protection</translation>
    </message>
    <message id="Quarantined">
        <translation>In Quarantäne</translation>
    </message>
    <message id="Safe">
        <translation>Sicher</translation>
    </message>
    <message id="ShowDetailsMenu">
        <translation>Details anzeigen</translation>
    </message>
    <message id="TM_All">
        <translation>Alles</translation>
    </message>
    <message id="TM_Background">
        <translation>Hintergrundprüfung starten</translation>
    </message>
    <message id="TM_Detection">
        <translation>Erkennung</translation>
    </message>
    <message id="TM_Error">
        <translation>Fehler</translation>
    </message>
    <message id="TM_Folder">
        <translation>Ordner prüfen …</translation>
    </message>
    <message id="TM_Information">
        <translation>Informationen</translation>
    </message>
    <message id="TM_Logging">
        <translation>Protokollstufe</translation>
    </message>
    <message id="TM_Stop">
        <translation>Prüfung anhalten</translation>
    </message>
    <message id="TM_Warning">
        <translation>Warnungen</translation>
    </message>
    <message id="Terminated">
        <translation>Beendet</translation>
    </message>
    <message id="Unknown">
        <translation>Unbekannt</translation>
    </message>
    <message id="Unsafe">
        <translation>Unsicher</translation>
    </message>
    <message id="Url">
        <translation>https://korvale.example/</translation>
    </message>
    <message id="Waived">
        <translation>Zugelassen</translation>
    </message>
</context>
<context>
    <message id="HPS_Cancel">
        <translation>Abbrechen</translation>
    </message>
    <message id="HPS_Close">
        <translation>Schließen</translation>
    </message>
    <message id="HPS_Export">
        <translation>Exportieren…</translation>
    </message>
    <message id="HPS_ExportCancelled">
        <translation>Der Export wurde abgebrochen. Was unter „%@“ lag, ist unverändert.</translation>
    </message>
    <message id="HPS_ExportDone">
        <translation>In „%@“ geschriebene Zeilen: %@</translation>
    </message>
    <message id="HPS_ExportFailed">
        <translation>„%@“ konnte nicht geschrieben werden: %@</translation>
    </message>
    <message id="HPS_ExportHint">
        <translation>Schreibt die angezeigten oder die ausgewählten Zeilen in eine CSV- oder JSON-Datei (Strg+S).</translation>
    </message>
    <message id="HPS_ExportNoFile">
        <translation>„%@“ ist keine gewöhnliche Datei auf diesem Rechner. Es wurde nichts geschrieben.</translation>
    </message>
    <message id="HPS_ExportNoRoom">
        <translation>Für „%@“ ist auf dem Datenträger kein Platz. Was dort lag, ist unverändert.</translation>
    </message>
    <message id="HPS_ExportRuns">
        <translation>„%@“ wird geschrieben</translation>
    </message>
    <message id="HPS_ExportSelected">
        <translation>Ausgewählte Zeilen (%@) als %@…</translation>
    </message>
    <message id="HPS_ExportShown">
        <translation>Angezeigte Zeilen (%@) als %@…</translation>
    </message>
    <message id="HPS_ExportTitle">
        <translation>Tabelle exportieren</translation>
    </message>
</context>
<context>
    <message id="HPS_MoveColumnLeft">
        <translation>Spalte nach links</translation>
    </message>
    <message id="HPS_MoveColumnRight">
        <translation>Spalte nach rechts</translation>
    </message>
    <message id="HPS_ResetOrder">
        <translation>Ursprüngliche Reihenfolge von Spalten und Zeilen</translation>
    </message>
</context>
<context>
    <!-- DetailsPane -->
    <message id="HPS_ColScore">
        <translation>Bewertung</translation>
    </message>
    <message id="HPS_DoAbnormal">
        <translation>Öffnen Sie sie nur, wenn Sie wissen, woher sie stammt. Ihr Administrator kann sie in Quarantäne nehmen oder, bei einem Fehlalarm, zulassen.</translation>
    </message>
    <message id="HPS_DoAlert">
        <translation>Schließen Sie das Programm, aktualisieren Sie es, und informieren Sie Ihren Administrator, der auch einen Fehlalarm erkennen kann.</translation>
    </message>
    <message id="HPS_DoDeviceAllowed">
        <translation>Es ist nichts zu tun. Gehört das Gerät nicht Ihnen, ziehen Sie es ab und informieren Sie Ihren Administrator.</translation>
    </message>
    <message id="HPS_DoDeviceBlocked">
        <translation>Wenn Sie es brauchen, bitten Sie Ihren Administrator, es zuzulassen, und geben Sie die Angaben von hier weiter.</translation>
    </message>
    <message id="HPS_DoEvent">
        <translation>Suchen Sie die Datei im Reiter „Bedrohungen“: Dort steht, was aus ihr geworden und was zu tun ist. Steht sie nicht mehr dort, ist nichts zu tun.</translation>
    </message>
    <message id="HPS_DoQuarantined">
        <translation>Es ist nichts zu tun. Bei einem Fehlalarm kann Ihr Administrator die Datei zurückholen und zulassen.</translation>
    </message>
    <message id="HPS_DoStopped">
        <translation>Aktualisieren Sie das Programm. Funktioniert es deswegen nicht mehr, informieren Sie Ihren Administrator: Es kann ein Fehlalarm sein.</translation>
    </message>
    <message id="HPS_DoUnknown">
        <translation>Aktualisieren Sie KorvaleUI, oder fragen Sie Ihren Administrator nach der Bedeutung.</translation>
    </message>
    <message id="HPS_DoUnsafe">
        <translation>Öffnen Sie sie nicht. Informieren Sie Ihren Administrator: Er kann sie in Quarantäne nehmen oder, bei einem Fehlalarm, zulassen.</translation>
    </message>
    <message id="HPS_DoWaived">
        <translation>Es ist nichts zu tun. Hat das niemand entschieden, den Sie kennen, informieren Sie Ihren Administrator.</translation>
    </message>
    <message id="HPS_MeansAbnormal">
        <translation>Diese Datei ähnelt schädlichen Dateien, ist aber nicht als solche bekannt. Sie liegt noch dort, wo sie gefunden wurde.</translation>
    </message>
    <message id="HPS_MeansAlert">
        <translation>Der Agent hat gesehen, dass dieses Programm angegriffen wird, und hat es weiterlaufen lassen.</translation>
    </message>
    <message id="HPS_MeansBlocked">
        <translation>Der Agent hat einen Angriff auf dieses Programm abgewehrt. Das Programm läuft weiter.</translation>
    </message>
    <message id="HPS_MeansChanged">
        <translation>Der Agent beurteilt diese Datei anders als zuvor.</translation>
    </message>
    <message id="HPS_MeansDetected">
        <translation>Der Agent hat diese Datei zu dieser Zeit gefunden und als Bedrohung eingestuft.</translation>
    </message>
    <message id="HPS_MeansDeviceAllowed">
        <translation>Die Richtlinie lässt dieses Gerät zu: Es kann hier verwendet werden.</translation>
    </message>
    <message id="HPS_MeansDeviceBlocked">
        <translation>Die Richtlinie lässt dieses Gerät nicht zu: Es kann hier nicht verwendet werden.</translation>
    </message>
    <message id="HPS_MeansIgnored">
        <translation>Der Agent hat hier etwas gesehen, das er ignorieren soll.</translation>
    </message>
    <message id="HPS_MeansQuarantined">
        <translation>Der Agent hat diese Datei weggenommen und verwahrt sie dort, wo sie nicht schaden kann.</translation>
    </message>
    <message id="HPS_MeansRemoved">
        <translation>Diese Datei ist vom Gerät entfernt worden.</translation>
    </message>
    <message id="HPS_MeansTerminated">
        <translation>Der Agent hat dieses Programm beendet, weil es angegriffen wurde.</translation>
    </message>
    <message id="HPS_MeansUnknown">
        <translation>Der Agent meldet einen Zustand, den diese Version von KorvaleUI nicht kennt.</translation>
    </message>
    <message id="HPS_MeansUnsafe">
        <translation>Der Agent hält diese Datei für schädlich. Sie liegt noch dort, wo sie gefunden wurde.</translation>
    </message>
    <message id="HPS_MeansWaived">
        <translation>Jemand hat entschieden, dass diese Datei bleiben darf; der Agent lässt sie in Ruhe.</translation>
    </message>
    <message id="HPS_PaneClose">
        <translation>Details schließen</translation>
    </message>
    <message id="HPS_PaneCopy">
        <translation>Kopieren</translation>
    </message>
    <message id="HPS_PaneCopyPath">
        <translation>Pfad kopieren</translation>
    </message>
    <message id="HPS_PaneCut">
        <translation>Sehr lange Texte sind hier gekürzt; „Kopieren“ nimmt sie ganz.</translation>
    </message>
    <message id="HPS_PaneDo">
        <translation>Was zu tun ist</translation>
    </message>
    <message id="HPS_PaneGone">
        <translation>Diese Zeile ist nicht mehr in der Tabelle. Unten steht, was sie zuletzt sagte.</translation>
    </message>
    <message id="HPS_PaneMeans">
        <translation>Bedeutung</translation>
    </message>
    <message id="HPS_PaneMore">
        <translation>… und %@ weitere; „Pfad kopieren“ kopiert alle.</translation>
    </message>
    <message id="HPS_PaneNoManager">
        <translation>Es konnte kein Dateimanager geöffnet werden.</translation>
    </message>
    <message id="HPS_PanePath">
        <translation>Pfad</translation>
    </message>
    <message id="HPS_PaneSelectAll">
        <translation>Alles auswählen</translation>
    </message>
    <message id="HPS_PaneShow">
        <translation>Im Dateimanager zeigen</translation>
    </message>
</context>
</TS>
