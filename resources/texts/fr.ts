<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <message id="Abnormal">
        <translation>Anormal</translation>
    </message>
    <message id="About">
        <translation>À propos de KorvaleUI</translation>
    </message>
    <message id="AboutPolicy">
        <translation>Stratégie :</translation>
    </message>
    <message id="AboutPolicyLastUpdated">
        <translation>Dernière mise à jour de la stratégie :</translation>
    </message>
    <message id="AboutVersion">
        <translation>Version %@</translation>
    </message>
    <message id="Alert">
        <translation>Alerte</translation>
    </message>
    <message id="Analyzed">
        <translation>Fichiers analysés :</translation>
    </message>
    <message id="BTDFinishedScanningMessage">
        <translation>L’analyse en arrière-plan est terminée.</translation>
    </message>
    <message id="BTDFinishedScanningTitle">
        <translation>Analyse en arrière-plan terminée</translation>
    </message>
    <message id="Blocked">
        <translation>Bloqué</translation>
    </message>
    <message id="CM_CheckForPolicyUpdate">
        <translation>Rechercher les mises à jour de la stratégie</translation>
    </message>
    <message id="CM_ShowNotifications">
        <translation>Afficher les notifications</translation>
    </message>
    <message id="CategoryTooltip">
        <translation>Classement de cet élément par l’agent, ou mesure prise</translation>
    </message>
    <message id="CheckForUpdates">
        <translation>Rechercher les mises à jour</translation>
    </message>
    <message id="ChooseFolderTitle">
        <translation>Choisir un dossier à analyser</translation>
    </message>
    <message id="Company">
        <translation>Korvale</translation>
    </message>
    <message id="DefaultPolicyMode">
        <translation>Standard</translation>
    </message>
    <message id="DefaultPolicyName">
        <translation>Par défaut</translation>
    </message>
    <message id="EventStrExploitApplication">
        <translation>Application :</translation>
    </message>
    <message id="EventStrExploitViolation">
        <translation>Violation :</translation>
    </message>
    <message id="EventStrThreat">
        <translation>Menace</translation>
    </message>
    <message id="EventThreatStringFromValueDetected">
        <translation>Détecté</translation>
    </message>
    <message id="EventThreatStringFromValueNone">
        <translation>Aucun</translation>
    </message>
    <message id="EventThreatStringFromValueRemoved">
        <translation>Supprimé</translation>
    </message>
    <message id="EventThreatStringFromValueRunning">
        <translation>En cours d’exécution</translation>
    </message>
    <message id="EventThreatStringFromValueStateChange">
        <translation>Changement d’état</translation>
    </message>
    <message id="Exit">
        <translation>Quitter</translation>
    </message>
    <message id="FoundTooltip">
        <translation>Nombre de détections</translation>
    </message>
    <message id="FullAccess">
        <translation>Accès complet</translation>
    </message>
    <message id="HPS_Advice">
        <translation>Ce que cela signifie</translation>
    </message>
    <message id="HPS_ClearNotifications">
        <translation>Effacer la liste</translation>
    </message>
    <message id="HPS_ColAction">
        <translation>Action</translation>
    </message>
    <message id="HPS_ColCategory">
        <translation>Catégorie</translation>
    </message>
    <message id="HPS_ColDetails">
        <translation>Détails</translation>
    </message>
    <message id="HPS_ColDeviceType">
        <translation>Type d’appareil</translation>
    </message>
    <message id="HPS_ColEvent">
        <translation>Événement</translation>
    </message>
    <message id="HPS_ColFile">
        <translation>Fichier</translation>
    </message>
    <message id="HPS_ColFound">
        <translation>Trouvé</translation>
    </message>
    <message id="HPS_ColID">
        <translation>ID</translation>
    </message>
    <message id="HPS_ColPID">
        <translation>PID</translation>
    </message>
    <message id="HPS_ColProcess">
        <translation>Processus</translation>
    </message>
    <message id="HPS_ColProductID">
        <translation>ID de produit</translation>
    </message>
    <message id="HPS_ColSerialNumber">
        <translation>Numéro de série</translation>
    </message>
    <message id="HPS_ColVendorID">
        <translation>ID du fabricant</translation>
    </message>
    <message id="HPS_ColWhen">
        <translation>Date</translation>
    </message>
    <message id="HPS_CopyNotification">
        <translation>Copier</translation>
    </message>
    <message id="HPS_Credits">
        <translation>Détails de la stratégie</translation>
    </message>
    <message id="HPS_EmptyAgentAway">
        <translation>L’agent de protection n’est pas en cours d’exécution : on ne sait donc pas si quelque chose a été détecté.</translation>
    </message>
    <message id="HPS_EmptyDevices">
        <translation>L’activité des périphériques externes apparaîtra ici.</translation>
    </message>
    <message id="HPS_EmptyEvents">
        <translation>Les événements enregistrés par l’agent apparaîtront ici.</translation>
    </message>
    <message id="HPS_EmptyExploits">
        <translation>Aucune tentative d’exploitation n’a été détectée.</translation>
    </message>
    <message id="HPS_EmptyFind">
        <translation>Aucune ligne ne contient tous ces mots. Échap affiche à nouveau toutes les lignes.</translation>
    </message>
    <message id="HPS_EmptyNotRead">
        <translation>L’agent n’a encore rien communiqué : on ne sait donc pas si quelque chose a été détecté.</translation>
    </message>
    <message id="HPS_EmptyThreats">
        <translation>Aucune menace n’a été détectée.</translation>
    </message>
    <message id="HPS_EmptyUnreadable">
        <translation>Le rapport de l’agent est illisible : on ne sait donc pas si quelque chose a été détecté.</translation>
    </message>
    <message id="HPS_Events">
        <translation>Événements</translation>
    </message>
    <message id="HPS_Exploits">
        <translation>Exploits</translation>
    </message>
    <message id="HPS_ExternalDevices">
        <translation>Périphériques externes</translation>
    </message>
    <message id="HPS_Find">
        <translation>Rechercher</translation>
    </message>
    <message id="HPS_FindClear">
        <translation>Afficher toutes les lignes</translation>
    </message>
    <message id="HPS_FindCount">
        <translation>%@ sur %@</translation>
    </message>
    <message id="HPS_FindCountName">
        <translation>Lignes affichées</translation>
    </message>
    <message id="HPS_FindHint">
        <translation>Affiche les lignes qui contiennent tous ces mots (Ctrl+F). Échap affiche à nouveau toutes les lignes.</translation>
    </message>
    <message id="HPS_HeaderHint">
        <translation>La barre d’espace trie selon cette colonne. La touche Menu la déplace.</translation>
    </message>
    <message id="HPS_LastScan">
        <translation>Fin de la dernière analyse en arrière-plan : %@</translation>
    </message>
    <message id="HPS_LastScanName">
        <translation>Dernière analyse en arrière-plan</translation>
    </message>
    <message id="HPS_Logo">
        <translation>Logo Korvale</translation>
    </message>
    <message id="HPS_LogoToolTip">
        <translation>Visiter le site de Korvale</translation>
    </message>
    <message id="HPS_Menu">
        <translation>Menu</translation>
    </message>
    <message id="HPS_MenuToolTip">
        <translation>Ouvrir le menu de KorvaleUI</translation>
    </message>
    <message id="HPS_NoNotifications">
        <translation>Aucune notification pour le moment.</translation>
    </message>
    <message id="HPS_NotificationHeldBack">
        <translation>Non affichée, car les notifications sont désactivées.</translation>
    </message>
    <message id="HPS_Notifications">
        <translation>Notifications</translation>
    </message>
    <message id="HPS_NotificationsHint">
        <translation>Affiche ce que disaient les dernières notifications (Ctrl+N)</translation>
    </message>
    <message id="HPS_NowAgentAway">
        <translation>Rien n’est surveillé sur cet appareil tant que l’agent ne fonctionne pas ; ce qui est affiché est le dernier état connu. Redémarrez l’appareil ou demandez à votre administrateur de démarrer le service de l’agent.</translation>
    </message>
    <message id="HPS_NowConnectionUnknown">
        <translation>L’agent n’a pas indiqué s’il est connecté ; il travaille peut-être avec ce qu’il savait en dernier. Il n’y a rien à faire ; si cela dure des heures, vérifiez la connexion réseau.</translation>
    </message>
    <message id="HPS_NowDriverMissing">
        <translation>Sans son pilote, l’agent ne peut pas surveiller les fichiers à leur ouverture. Redémarrez l’appareil ; si cela ne suffit pas, prévenez votre administrateur : le pilote ne convient peut-être pas au noyau actuel.</translation>
    </message>
    <message id="HPS_NowExploits">
        <translation>Ouvrez l’onglet des exploits : il indique quel programme a été attaqué et si l’agent l’a arrêté. Fermez ce programme, mettez-le à jour et prévenez votre administrateur.</translation>
    </message>
    <message id="HPS_NowNotReported">
        <translation>On ne sait pas encore si quelque chose a été trouvé. L’agent fait un rapport après son premier examen de l’appareil ; une analyse en arrière-plan le lui demande.</translation>
    </message>
    <message id="HPS_NowOffline">
        <translation>L’agent protège avec ce qu’il savait en dernier. Vérifiez la connexion réseau ; si d’autres programmes accèdent au réseau, prévenez votre administrateur.</translation>
    </message>
    <message id="HPS_NowThreats">
        <translation>Ouvrez l’onglet des menaces : il indique pour chaque fichier ce que l’agent a fait. N’ouvrez pas un fichier qui n’est pas en quarantaine ; signalez-le à votre administrateur, même si vous pensez à une fausse alerte.</translation>
    </message>
    <message id="HPS_NowUnconfirmed">
        <translation>L’agent fonctionne et son prochain rapport est attendu. Patientez un instant ; si cela persiste, redémarrez l’appareil.</translation>
    </message>
    <message id="HPS_NowUnreadable">
        <translation>On ne sait pas si quelque chose a été trouvé. Le disque est peut-être plein ou un fichier endommagé : libérez de la place puis redémarrez l’appareil, ou prévenez votre administrateur.</translation>
    </message>
    <message id="HPS_ProtectionState">
        <translation>État de la protection</translation>
    </message>
    <message id="HPS_Quarantined">
        <translation>En quarantaine :</translation>
    </message>
    <message id="HPS_SortedAscending">
        <translation>tri croissant</translation>
    </message>
    <message id="HPS_SortedDescending">
        <translation>tri décroissant</translation>
    </message>
    <message id="HPS_StatusLine">
        <translation>État de l’agent</translation>
    </message>
    <message id="HPS_StatusNoAnswer">
        <translation>KorvaleUI ne répond pas</translation>
    </message>
    <message id="HPS_StatusNotRunning">
        <translation>KorvaleUI n’est pas en cours d’exécution</translation>
    </message>
    <message id="HPS_StatusUsage">
        <translation>Mauvais usage : --status avec --json, --bar waybar ou --bar i3status-rs, et avec --watch ; voir --help.</translation>
    </message>
    <message id="HPS_TableHint">
        <translation>Entrée affiche les détails d’une ligne. Ctrl+C copie les lignes sélectionnées. Maj+F1 en dit plus sur une cellule.</translation>
    </message>
    <message id="HPS_Tabs">
        <translation>Résultats</translation>
    </message>
    <message id="HPS_TermBackground">
        <translation>L’agent a commencé l’analyse en arrière-plan.</translation>
    </message>
    <message id="HPS_TermFound">
        <translation>Menaces trouvées : %@</translation>
    </message>
    <message id="HPS_TermGoesOn">
        <translation>L’agent poursuit l’analyse ; --background-scan stop l’arrête.</translation>
    </message>
    <message id="HPS_TermLeft">
        <translation>L’agent s’est arrêté avant d’avoir fini.</translation>
    </message>
    <message id="HPS_TermMore">
        <translation>… et %@ de plus</translation>
    </message>
    <message id="HPS_TermNoAgent">
        <translation>Aucun agent n’est en cours d’exécution.</translation>
    </message>
    <message id="HPS_TermNoAnswer">
        <translation>L’agent ne répond pas.</translation>
    </message>
    <message id="HPS_TermNoFolder">
        <translation>%@ n’est pas un dossier qui peut être analysé : %@</translation>
    </message>
    <message id="HPS_TermNoUpdater">
        <translation>Le programme de mise à jour n’a rien dit.</translation>
    </message>
    <message id="HPS_TermNotUnderstood">
        <translation>La réponse de l’agent est incompréhensible.</translation>
    </message>
    <message id="HPS_TermNotUtf8">
        <translation>%@ ne peut pas être analysé : le nom n’est pas en UTF-8 valide.</translation>
    </message>
    <message id="HPS_TermNothing">
        <translation>L’agent n’a signalé aucune menace.</translation>
    </message>
    <message id="HPS_TermRefused">
        <translation>L’agent a refusé : %@</translation>
    </message>
    <message id="HPS_TermSays">
        <translation>L’agent dit : %@</translation>
    </message>
    <message id="HPS_TermScan">
        <translation>L’agent analyse %@</translation>
    </message>
    <message id="HPS_TermScanName">
        <translation>Rechercher des menaces</translation>
    </message>
    <message id="HPS_TermSilent">
        <translation>L’agent n’a rien dit depuis cinq minutes.</translation>
    </message>
    <message id="HPS_TermStop">
        <translation>L’agent arrête ses analyses.</translation>
    </message>
    <message id="HPS_TermStopped">
        <translation>Plus aucune analyse n’est en cours.</translation>
    </message>
    <message id="HPS_TermUpdates">
        <translation>L’agent recherche des mises à jour.</translation>
    </message>
    <message id="HPS_TermUsage">
        <translation>Mauvais usage : --check-updates, --scan DOSSIER… ou --background-scan start ou stop ; voir --help.</translation>
    </message>
    <message id="HPS_Threats">
        <translation>Menaces</translation>
    </message>
    <message id="HPS_WhatNow">
        <translation>Qu’est-ce que cela signifie ?</translation>
    </message>
    <message id="HPS_WhyAgentAway">
        <translation>L’agent de protection n’est pas actif</translation>
    </message>
    <message id="HPS_WhyConnectionUnknown">
        <translation>L’agent fonctionne ; rien de nouveau n’a été trouvé</translation>
    </message>
    <message id="HPS_WhyDriverMissing">
        <translation>Le pilote de l’agent est absent</translation>
    </message>
    <message id="HPS_WhyExploit">
        <translation>Une tentative d’exploitation n’a pas encore été consultée</translation>
    </message>
    <message id="HPS_WhyExploits">
        <translation>%@ tentatives d’exploitation n’ont pas encore été consultées</translation>
    </message>
    <message id="HPS_WhyGood">
        <translation>Connecté ; rien de nouveau n’a été trouvé</translation>
    </message>
    <message id="HPS_WhyNotReported">
        <translation>L’agent n’a pas encore fait de rapport</translation>
    </message>
    <message id="HPS_WhyOffline">
        <translation>L’agent de protection n’est pas connecté</translation>
    </message>
    <message id="HPS_WhyThreat">
        <translation>Une menace n’a pas encore été consultée</translation>
    </message>
    <message id="HPS_WhyThreatOffline">
        <translation>Non connecté ; une menace n’a pas encore été consultée</translation>
    </message>
    <message id="HPS_WhyThreats">
        <translation>%@ menaces n’ont pas encore été consultées</translation>
    </message>
    <message id="HPS_WhyThreatsOffline">
        <translation>Non connecté ; %@ menaces n’ont pas encore été consultées</translation>
    </message>
    <message id="HPS_WhyUnconfirmed">
        <translation>L’état actuel n’est pas encore confirmé</translation>
    </message>
    <message id="HPS_WhyUnreadable">
        <translation>Le rapport de l’agent est illisible</translation>
    </message>
    <message id="Ignored">
        <translation>Ignoré</translation>
    </message>
    <message id="Inspecting">
        <translation>Inspection de</translation>
    </message>
    <message id="KorvaleSONDAR">
        <translation>Korvale SONDAR</translation>
    </message>
    <message id="NoDriver">
        <translation>Le pilote de protection n’est pas connecté</translation>
    </message>
    <message id="NoNetwork">
        <translation>Aucune connexion réseau</translation>
    </message>
    <message id="NotRunning">
        <translation>L’agent de protection n’est pas en cours d’exécution</translation>
    </message>
    <message id="NotificationActionOpenLink">
        <translation>Ouvrir le lien</translation>
    </message>
    <message id="NotificationMessageAbnormalDetected">
        <translation>%@ a été identifié comme anormal.</translation>
    </message>
    <message id="NotificationMessageAbnormalQuarantined">
        <translation>%@ a été identifié comme anormal et placé en quarantaine.</translation>
    </message>
    <message id="NotificationMessageAbnormalsDetected">
        <translation>%@ fichiers ont été identifiés comme anormaux.</translation>
    </message>
    <message id="NotificationMessageAbnormalsQuarantined">
        <translation>%@ fichiers ont été identifiés comme anormaux et placés en quarantaine.</translation>
    </message>
    <message id="NotificationMessageExploitDetectedPID">
        <translation>Tentative d’exploitation dans %@ (processus %@) : %@</translation>
    </message>
    <message id="NotificationMessageNewExploit">
        <translation>Plusieurs nouvelles tentatives d’exploitation ont été détectées.</translation>
    </message>
    <message id="NotificationMessagePolicyExpired">
        <translation>La stratégie de protection de cet appareil a expiré. Contactez votre administrateur.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidCompanyId">
        <translation>La stratégie de protection a été émise pour une autre entreprise. Contactez votre administrateur.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidSignature">
        <translation>La signature de la stratégie de protection n’est pas valide. Contactez votre administrateur.</translation>
    </message>
    <message id="NotificationMessageUnsafeDetected">
        <translation>%@ a été identifié comme dangereux.</translation>
    </message>
    <message id="NotificationMessageUnsafeQuarantined">
        <translation>%@ a été identifié comme dangereux et placé en quarantaine.</translation>
    </message>
    <message id="NotificationMessageUnsafesDetected">
        <translation>%@ fichiers ont été identifiés comme dangereux.</translation>
    </message>
    <message id="NotificationMessageUnsafesQuarantined">
        <translation>%@ fichiers ont été identifiés comme dangereux et placés en quarantaine.</translation>
    </message>
    <message id="NotificationSubtitleAbnormalDetected">
        <translation>Fichier anormal détecté</translation>
    </message>
    <message id="NotificationSubtitleAbnormalQuarantined">
        <translation>Fichier anormal mis en quarantaine</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsDetected">
        <translation>Fichiers anormaux détectés</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsQuarantined">
        <translation>Fichiers anormaux mis en quarantaine</translation>
    </message>
    <message id="NotificationSubtitleExecutionBlock">
        <translation>Exécution bloquée</translation>
    </message>
    <message id="NotificationSubtitleExploitAttemptDetected">
        <translation>Tentative d’exploitation détectée</translation>
    </message>
    <message id="NotificationSubtitlePolicyExpired">
        <translation>Stratégie expirée</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidCompanyId">
        <translation>Stratégie d’une autre entreprise</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidSignature">
        <translation>Signature de stratégie non valide</translation>
    </message>
    <message id="NotificationSubtitleProcessActionBlocked">
        <translation>Action de processus bloquée</translation>
    </message>
    <message id="NotificationSubtitleProcessTerminated">
        <translation>Processus arrêté</translation>
    </message>
    <message id="NotificationSubtitleUnsafeDetected">
        <translation>Fichier dangereux détecté</translation>
    </message>
    <message id="NotificationSubtitleUnsafeQuarantined">
        <translation>Fichier dangereux mis en quarantaine</translation>
    </message>
    <message id="NotificationSubtitleUnsafesDetected">
        <translation>Fichiers dangereux détectés</translation>
    </message>
    <message id="NotificationSubtitleUnsafesQuarantined">
        <translation>Fichiers dangereux mis en quarantaine</translation>
    </message>
    <message id="OfflineMode">
        <translation>Hors ligne</translation>
    </message>
    <message id="ProductEP">
        <translation>Korvale Endpoint Protection</translation>
    </message>
    <message id="Quarantined">
        <translation>En quarantaine</translation>
    </message>
    <message id="Safe">
        <translation>Protégé</translation>
    </message>
    <message id="ShowDetailsMenu">
        <translation>Afficher les détails</translation>
    </message>
    <message id="TM_All">
        <translation>Tout</translation>
    </message>
    <message id="TM_Background">
        <translation>Analyser en arrière-plan</translation>
    </message>
    <message id="TM_Detection">
        <translation>Détection</translation>
    </message>
    <message id="TM_Error">
        <translation>Erreurs</translation>
    </message>
    <message id="TM_Folder">
        <translation>Analyser un dossier…</translation>
    </message>
    <message id="TM_Information">
        <translation>Informations</translation>
    </message>
    <message id="TM_Logging">
        <translation>Niveau de journalisation</translation>
    </message>
    <message id="TM_Stop">
        <translation>Arrêter l’analyse</translation>
    </message>
    <message id="TM_Warning">
        <translation>Avertissements</translation>
    </message>
    <message id="Terminated">
        <translation>Arrêté</translation>
    </message>
    <message id="Unknown">
        <translation>Inconnu</translation>
    </message>
    <message id="Unsafe">
        <translation>Dangereux</translation>
    </message>
    <message id="Url">
        <translation>https://korvale.example/</translation>
    </message>
    <message id="Waived">
        <translation>Autorisé</translation>
    </message>
</context>
<context>
    <message id="HPS_Cancel">
        <translation>Annuler</translation>
    </message>
    <message id="HPS_Close">
        <translation>Fermer</translation>
    </message>
    <message id="HPS_Export">
        <translation>Exporter…</translation>
    </message>
    <message id="HPS_ExportCancelled">
        <translation>L’exportation a été annulée. Ce qui se trouvait dans « %@ » est inchangé.</translation>
    </message>
    <message id="HPS_ExportDone">
        <translation>Lignes écrites dans « %@ » : %@</translation>
    </message>
    <message id="HPS_ExportFailed">
        <translation>Impossible d’écrire « %@ » : %@</translation>
    </message>
    <message id="HPS_ExportHint">
        <translation>Écrit les lignes affichées ou sélectionnées dans un fichier CSV ou JSON (Ctrl+S).</translation>
    </message>
    <message id="HPS_ExportNoFile">
        <translation>« %@ » n’est pas un fichier ordinaire de cette machine. Rien n’a été écrit.</translation>
    </message>
    <message id="HPS_ExportNoRoom">
        <translation>Il n’y a pas de place pour « %@ » sur son disque. Ce qui s’y trouvait est inchangé.</translation>
    </message>
    <message id="HPS_ExportRuns">
        <translation>Écriture de « %@ »</translation>
    </message>
    <message id="HPS_ExportSelected">
        <translation>Lignes sélectionnées (%@) en %@…</translation>
    </message>
    <message id="HPS_ExportShown">
        <translation>Lignes affichées (%@) en %@…</translation>
    </message>
    <message id="HPS_ExportTitle">
        <translation>Exporter le tableau</translation>
    </message>
</context>
<context>
    <message id="HPS_MoveColumnLeft">
        <translation>Déplacer la colonne à gauche</translation>
    </message>
    <message id="HPS_MoveColumnRight">
        <translation>Déplacer la colonne à droite</translation>
    </message>
    <message id="HPS_ResetOrder">
        <translation>Ordre initial des colonnes et des lignes</translation>
    </message>
</context>
<context>
    <!-- DetailsPane -->
    <message id="HPS_ColScore">
        <translation>Score</translation>
    </message>
    <message id="HPS_DoAbnormal">
        <translation>Ne l’ouvrez que si vous savez d’où il vient. Votre administrateur peut le mettre en quarantaine, ou l’autoriser si c’est une fausse alerte.</translation>
    </message>
    <message id="HPS_DoAlert">
        <translation>Fermez le programme, mettez-le à jour et prévenez votre administrateur, qui peut aussi juger s’il s’agit d’une fausse alerte.</translation>
    </message>
    <message id="HPS_DoDeviceAllowed">
        <translation>Il n’y a rien à faire. Si le périphérique n’est pas à vous, débranchez-le et prévenez votre administrateur.</translation>
    </message>
    <message id="HPS_DoDeviceBlocked">
        <translation>Si vous en avez besoin, demandez à votre administrateur de l’autoriser et transmettez-lui les données d’ici.</translation>
    </message>
    <message id="HPS_DoEvent">
        <translation>Cherchez le fichier dans l’onglet des menaces : il indique ce qu’il est devenu et ce qu’il faut faire. S’il n’y est plus, il n’y a rien à faire.</translation>
    </message>
    <message id="HPS_DoQuarantined">
        <translation>Il n’y a rien à faire. Si c’est une fausse alerte, votre administrateur peut restaurer le fichier et l’autoriser.</translation>
    </message>
    <message id="HPS_DoStopped">
        <translation>Mettez le programme à jour. S’il ne fonctionne plus à cause de cela, prévenez votre administrateur : c’est peut-être une fausse alerte.</translation>
    </message>
    <message id="HPS_DoUnknown">
        <translation>Mettez KorvaleUI à jour, ou demandez à votre administrateur ce que cela signifie.</translation>
    </message>
    <message id="HPS_DoUnsafe">
        <translation>Ne l’ouvrez pas. Prévenez votre administrateur, qui peut le mettre en quarantaine, ou l’autoriser si c’est une fausse alerte.</translation>
    </message>
    <message id="HPS_DoWaived">
        <translation>Il n’y a rien à faire. Si vous ne savez pas qui en a décidé ainsi, prévenez votre administrateur.</translation>
    </message>
    <message id="HPS_MeansAbnormal">
        <translation>Ce fichier ressemble à des fichiers nuisibles, sans être connu comme tel. Il est toujours là où il a été trouvé.</translation>
    </message>
    <message id="HPS_MeansAlert">
        <translation>L’agent a vu que ce programme est attaqué et l’a laissé continuer.</translation>
    </message>
    <message id="HPS_MeansBlocked">
        <translation>L’agent a arrêté une attaque contre ce programme, qui continue de fonctionner.</translation>
    </message>
    <message id="HPS_MeansChanged">
        <translation>L’agent juge ce fichier autrement qu’auparavant.</translation>
    </message>
    <message id="HPS_MeansDetected">
        <translation>L’agent a trouvé ce fichier à ce moment-là et l’a jugé menaçant.</translation>
    </message>
    <message id="HPS_MeansDeviceAllowed">
        <translation>La stratégie autorise ce périphérique : il peut être utilisé ici.</translation>
    </message>
    <message id="HPS_MeansDeviceBlocked">
        <translation>La stratégie n’autorise pas ce périphérique : il ne peut pas être utilisé ici.</translation>
    </message>
    <message id="HPS_MeansIgnored">
        <translation>L’agent a vu ici quelque chose qu’il doit ignorer.</translation>
    </message>
    <message id="HPS_MeansQuarantined">
        <translation>L’agent a retiré ce fichier et le garde là où il ne peut pas nuire.</translation>
    </message>
    <message id="HPS_MeansRemoved">
        <translation>Ce fichier a été supprimé de l’appareil.</translation>
    </message>
    <message id="HPS_MeansTerminated">
        <translation>L’agent a arrêté ce programme parce qu’il était attaqué.</translation>
    </message>
    <message id="HPS_MeansUnknown">
        <translation>L’agent signale un état que cette version de KorvaleUI ne connaît pas.</translation>
    </message>
    <message id="HPS_MeansUnsafe">
        <translation>L’agent juge ce fichier nuisible. Il est toujours là où il a été trouvé.</translation>
    </message>
    <message id="HPS_MeansWaived">
        <translation>Quelqu’un a décidé que ce fichier peut rester ; l’agent le laisse tranquille.</translation>
    </message>
    <message id="HPS_PaneClose">
        <translation>Fermer les détails</translation>
    </message>
    <message id="HPS_PaneCopy">
        <translation>Copier</translation>
    </message>
    <message id="HPS_PaneCopyPath">
        <translation>Copier le chemin</translation>
    </message>
    <message id="HPS_PaneCut">
        <translation>Les textes très longs sont raccourcis ici ; « Copier » les copie en entier.</translation>
    </message>
    <message id="HPS_PaneDo">
        <translation>Que faire</translation>
    </message>
    <message id="HPS_PaneGone">
        <translation>Cette ligne n’est plus dans le tableau. Voici ce qu’elle indiquait en dernier.</translation>
    </message>
    <message id="HPS_PaneMeans">
        <translation>Signification</translation>
    </message>
    <message id="HPS_PaneMore">
        <translation>… et %@ autres ; « Copier le chemin » les copie tous.</translation>
    </message>
    <message id="HPS_PaneNoManager">
        <translation>Aucun gestionnaire de fichiers n’a pu être ouvert.</translation>
    </message>
    <message id="HPS_PanePath">
        <translation>Chemin</translation>
    </message>
    <message id="HPS_PaneSelectAll">
        <translation>Tout sélectionner</translation>
    </message>
    <message id="HPS_PaneShow">
        <translation>Afficher dans le gestionnaire de fichiers</translation>
    </message>
</context>
</TS>
