<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES">
<context>
    <message id="Abnormal">
        <translation>Anómalo</translation>
    </message>
    <message id="About">
        <translation>Acerca de KorvaleUI</translation>
    </message>
    <message id="AboutPolicy">
        <translation>Directiva:</translation>
    </message>
    <message id="AboutPolicyLastUpdated">
        <translation>Última actualización de la directiva:</translation>
    </message>
    <message id="AboutVersion">
        <translation>Versión %@</translation>
    </message>
    <message id="Alert">
        <translation>Alerta</translation>
    </message>
    <message id="Analyzed">
        <translation>Archivos analizados:</translation>
    </message>
    <message id="BTDFinishedScanningMessage">
        <translation>El análisis en segundo plano ha terminado.</translation>
    </message>
    <message id="BTDFinishedScanningTitle">
        <translation>Análisis en segundo plano completado</translation>
    </message>
    <message id="Blocked">
        <translation>Bloqueado</translation>
    </message>
    <message id="CM_CheckForPolicyUpdate">
        <translation>Buscar actualizaciones de directivas</translation>
    </message>
    <message id="CM_ShowNotifications">
        <translation>Mostrar notificaciones</translation>
    </message>
    <message id="CategoryTooltip">
        <translation>Cómo clasifica el agente este elemento o qué ha hecho con él</translation>
    </message>
    <message id="CheckForUpdates">
        <translation>Buscar actualizaciones</translation>
    </message>
    <message id="ChooseFolderTitle">
        <translation>Elija una carpeta para analizar</translation>
    </message>
    <message id="Company">
        <translation>Korvale</translation>
    </message>
    <message id="DefaultPolicyMode">
        <translation>Estándar</translation>
    </message>
    <message id="DefaultPolicyName">
        <translation>Predeterminada</translation>
    </message>
    <message id="EventStrExploitApplication">
        <translation>Aplicación:</translation>
    </message>
    <message id="EventStrExploitViolation">
        <translation>Infracción:</translation>
    </message>
    <message id="EventStrThreat">
        <translation>Amenaza</translation>
    </message>
    <message id="EventThreatStringFromValueDetected">
        <translation>Detectado</translation>
    </message>
    <message id="EventThreatStringFromValueNone">
        <translation>Ninguno</translation>
    </message>
    <message id="EventThreatStringFromValueRemoved">
        <translation>Eliminado</translation>
    </message>
    <message id="EventThreatStringFromValueRunning">
        <translation>En ejecución</translation>
    </message>
    <message id="EventThreatStringFromValueStateChange">
        <translation>Cambio de estado</translation>
    </message>
    <message id="Exit">
        <translation>Salir</translation>
    </message>
    <message id="FoundTooltip">
        <translation>Número de veces que se encontró</translation>
    </message>
    <message id="FullAccess">
        <translation>Acceso total</translation>
    </message>
    <message id="HPS_Advice">
        <translation>Lo que esto significa</translation>
    </message>
    <message id="HPS_ClearNotifications">
        <translation>Vaciar la lista</translation>
    </message>
    <message id="HPS_ColAction">
        <translation>Acción</translation>
    </message>
    <message id="HPS_ColCategory">
        <translation>Categoría</translation>
    </message>
    <message id="HPS_ColDetails">
        <translation>Detalles</translation>
    </message>
    <message id="HPS_ColDeviceType">
        <translation>Tipo de dispositivo</translation>
    </message>
    <message id="HPS_ColEvent">
        <translation>Evento</translation>
    </message>
    <message id="HPS_ColFile">
        <translation>Archivo</translation>
    </message>
    <message id="HPS_ColFound">
        <translation>Encontrado</translation>
    </message>
    <message id="HPS_ColID">
        <translation>ID</translation>
    </message>
    <message id="HPS_ColPID">
        <translation>PID</translation>
    </message>
    <message id="HPS_ColProcess">
        <translation>Proceso</translation>
    </message>
    <message id="HPS_ColProductID">
        <translation>ID de producto</translation>
    </message>
    <message id="HPS_ColSerialNumber">
        <translation>Número de serie</translation>
    </message>
    <message id="HPS_ColVendorID">
        <translation>ID de fabricante</translation>
    </message>
    <message id="HPS_ColWhen">
        <translation>Fecha</translation>
    </message>
    <message id="HPS_CopyNotification">
        <translation>Copiar</translation>
    </message>
    <message id="HPS_Credits">
        <translation>Detalles de la directiva</translation>
    </message>
    <message id="HPS_EmptyAgentAway">
        <translation>El agente de protección no se está ejecutando, por lo que no se sabe si se ha encontrado algo.</translation>
    </message>
    <message id="HPS_EmptyDevices">
        <translation>Aquí aparecerá la actividad de los dispositivos externos.</translation>
    </message>
    <message id="HPS_EmptyEvents">
        <translation>Aquí aparecerán los eventos que registre el agente.</translation>
    </message>
    <message id="HPS_EmptyExploits">
        <translation>No se ha detectado ningún intento de explotación.</translation>
    </message>
    <message id="HPS_EmptyFind">
        <translation>Ninguna fila contiene todas estas palabras. Escape vuelve a mostrar todas las filas.</translation>
    </message>
    <message id="HPS_EmptyNotRead">
        <translation>El agente aún no ha informado, por lo que no se sabe si se ha encontrado algo.</translation>
    </message>
    <message id="HPS_EmptyThreats">
        <translation>No se ha encontrado ninguna amenaza.</translation>
    </message>
    <message id="HPS_EmptyUnreadable">
        <translation>No se puede leer el informe del agente, por lo que no se sabe si se ha encontrado algo.</translation>
    </message>
    <message id="HPS_Events">
        <translation>Eventos</translation>
    </message>
    <message id="HPS_Exploits">
        <translation>Exploits</translation>
    </message>
    <message id="HPS_ExternalDevices">
        <translation>Dispositivos externos</translation>
    </message>
    <message id="HPS_Find">
        <translation>Buscar</translation>
    </message>
    <message id="HPS_FindClear">
        <translation>Mostrar todas las filas</translation>
    </message>
    <message id="HPS_FindCount">
        <translation>%@ de %@</translation>
    </message>
    <message id="HPS_FindCountName">
        <translation>Filas mostradas</translation>
    </message>
    <message id="HPS_FindHint">
        <translation>Muestra las filas que contienen todas estas palabras (Ctrl+F). Escape vuelve a mostrar todas las filas.</translation>
    </message>
    <message id="HPS_HeaderHint">
        <translation>La barra espaciadora ordena por esta columna. La tecla Menú la mueve.</translation>
    </message>
    <message id="HPS_LastScan">
        <translation>Último análisis en segundo plano terminado: %@</translation>
    </message>
    <message id="HPS_LastScanName">
        <translation>Último análisis en segundo plano</translation>
    </message>
    <message id="HPS_Logo">
        <translation>Logotipo de Korvale</translation>
    </message>
    <message id="HPS_LogoToolTip">
        <translation>Visitar la página de Korvale</translation>
    </message>
    <message id="HPS_Menu">
        <translation>Menú</translation>
    </message>
    <message id="HPS_MenuToolTip">
        <translation>Abrir el menú de KorvaleUI</translation>
    </message>
    <message id="HPS_NoNotifications">
        <translation>Aún no hay notificaciones.</translation>
    </message>
    <message id="HPS_NotificationHeldBack">
        <translation>No se mostró porque las notificaciones están desactivadas.</translation>
    </message>
    <message id="HPS_Notifications">
        <translation>Notificaciones</translation>
    </message>
    <message id="HPS_NotificationsHint">
        <translation>Muestra lo que decían las últimas notificaciones (Ctrl+N)</translation>
    </message>
    <message id="HPS_NowAgentAway">
        <translation>Nada se vigila en este dispositivo hasta que el agente vuelva a funcionar; lo que se muestra es lo último que se supo. Reinicie el dispositivo o pida a su administrador que inicie el servicio del agente.</translation>
    </message>
    <message id="HPS_NowConnectionUnknown">
        <translation>El agente no ha dicho si está conectado; quizá trabaje con lo último que supo. No hay que hacer nada; si esto dura horas, compruebe la conexión de red.</translation>
    </message>
    <message id="HPS_NowDriverMissing">
        <translation>Sin su controlador, el agente no puede vigilar los archivos al abrirse. Reinicie el dispositivo; si no basta, avise a su administrador: puede que el controlador no sirva para el núcleo actual.</translation>
    </message>
    <message id="HPS_NowExploits">
        <translation>Abra la pestaña de exploits: dice qué programa fue atacado y si el agente lo detuvo. Cierre ese programa, actualícelo y avise a su administrador.</translation>
    </message>
    <message id="HPS_NowNotReported">
        <translation>Aún no se sabe si se ha encontrado algo. El agente informa tras su primer examen del dispositivo; un análisis en segundo plano se lo pide.</translation>
    </message>
    <message id="HPS_NowOffline">
        <translation>El agente protege con lo último que supo. Compruebe la conexión de red; si otros programas acceden a la red, avise a su administrador.</translation>
    </message>
    <message id="HPS_NowThreats">
        <translation>Abra la pestaña de amenazas: dice de cada archivo lo que ha hecho el agente. No abra un archivo que no esté en cuarentena; comuníquelo a su administrador, aunque crea que es una falsa alarma.</translation>
    </message>
    <message id="HPS_NowUnconfirmed">
        <translation>El agente funciona y se espera su próximo informe. Espere un momento; si esto continúa, reinicie el dispositivo.</translation>
    </message>
    <message id="HPS_NowUnreadable">
        <translation>No se sabe si se ha encontrado algo. Puede que el disco esté lleno o un archivo dañado: libere espacio y reinicie el dispositivo, o avise a su administrador.</translation>
    </message>
    <message id="HPS_ProtectionState">
        <translation>Estado de la protección</translation>
    </message>
    <message id="HPS_Quarantined">
        <translation>En cuarentena:</translation>
    </message>
    <message id="HPS_SortedAscending">
        <translation>orden ascendente</translation>
    </message>
    <message id="HPS_SortedDescending">
        <translation>orden descendente</translation>
    </message>
    <message id="HPS_StatusLine">
        <translation>Estado del agente</translation>
    </message>
    <message id="HPS_StatusNoAnswer">
        <translation>KorvaleUI no responde</translation>
    </message>
    <message id="HPS_StatusNotRunning">
        <translation>KorvaleUI no está en ejecución</translation>
    </message>
    <message id="HPS_StatusUsage">
        <translation>Uso incorrecto: --status con --json, --bar waybar o --bar i3status-rs, y con --watch; consulte --help.</translation>
    </message>
    <message id="HPS_TableHint">
        <translation>Intro muestra los detalles de una fila. Ctrl+C copia las filas seleccionadas. Mayús+F1 da más información sobre una celda.</translation>
    </message>
    <message id="HPS_Tabs">
        <translation>Hallazgos</translation>
    </message>
    <message id="HPS_TermBackground">
        <translation>El agente ha iniciado el análisis en segundo plano.</translation>
    </message>
    <message id="HPS_TermFound">
        <translation>Amenazas encontradas: %@</translation>
    </message>
    <message id="HPS_TermGoesOn">
        <translation>El agente continúa el análisis; --background-scan stop lo detiene.</translation>
    </message>
    <message id="HPS_TermLeft">
        <translation>El agente ha terminado antes de acabar.</translation>
    </message>
    <message id="HPS_TermMore">
        <translation>… y %@ más</translation>
    </message>
    <message id="HPS_TermNoAgent">
        <translation>No hay ningún agente en ejecución.</translation>
    </message>
    <message id="HPS_TermNoAnswer">
        <translation>El agente no responde.</translation>
    </message>
    <message id="HPS_TermNoFolder">
        <translation>%@ no es una carpeta que se pueda analizar: %@</translation>
    </message>
    <message id="HPS_TermNoUpdater">
        <translation>El actualizador no ha dicho nada.</translation>
    </message>
    <message id="HPS_TermNotUnderstood">
        <translation>No se puede entender la respuesta del agente.</translation>
    </message>
    <message id="HPS_TermNotUtf8">
        <translation>No se puede analizar %@: el nombre no es UTF-8 válido.</translation>
    </message>
    <message id="HPS_TermNothing">
        <translation>El agente no ha informado de ninguna amenaza.</translation>
    </message>
    <message id="HPS_TermRefused">
        <translation>El agente lo ha rechazado: %@</translation>
    </message>
    <message id="HPS_TermSays">
        <translation>El agente dice: %@</translation>
    </message>
    <message id="HPS_TermScan">
        <translation>El agente analiza %@</translation>
    </message>
    <message id="HPS_TermScanName">
        <translation>Analizar en busca de amenazas</translation>
    </message>
    <message id="HPS_TermSilent">
        <translation>El agente no ha dicho nada durante cinco minutos.</translation>
    </message>
    <message id="HPS_TermStop">
        <translation>El agente detiene sus análisis.</translation>
    </message>
    <message id="HPS_TermStopped">
        <translation>Ya no hay ningún análisis en curso.</translation>
    </message>
    <message id="HPS_TermUpdates">
        <translation>El agente busca actualizaciones.</translation>
    </message>
    <message id="HPS_TermUsage">
        <translation>Uso incorrecto: --check-updates, --scan CARPETA… o --background-scan start o stop; consulte --help.</translation>
    </message>
    <message id="HPS_Threats">
        <translation>Amenazas</translation>
    </message>
    <message id="HPS_WhatNow">
        <translation>¿Qué significa esto?</translation>
    </message>
    <message id="HPS_WhyAgentAway">
        <translation>El agente de protección no está activo</translation>
    </message>
    <message id="HPS_WhyConnectionUnknown">
        <translation>El agente funciona; no se ha encontrado nada nuevo</translation>
    </message>
    <message id="HPS_WhyDriverMissing">
        <translation>Falta el controlador del agente</translation>
    </message>
    <message id="HPS_WhyExploit">
        <translation>Un intento de explotación no se ha revisado</translation>
    </message>
    <message id="HPS_WhyExploits">
        <translation>%@ intentos de explotación no se han revisado</translation>
    </message>
    <message id="HPS_WhyGood">
        <translation>Conectado; no se ha encontrado nada nuevo</translation>
    </message>
    <message id="HPS_WhyNotReported">
        <translation>El agente aún no ha informado</translation>
    </message>
    <message id="HPS_WhyOffline">
        <translation>El agente de protección no está conectado</translation>
    </message>
    <message id="HPS_WhyThreat">
        <translation>Una amenaza no se ha revisado</translation>
    </message>
    <message id="HPS_WhyThreatOffline">
        <translation>Sin conexión; una amenaza no se ha revisado</translation>
    </message>
    <message id="HPS_WhyThreats">
        <translation>%@ amenazas no se han revisado</translation>
    </message>
    <message id="HPS_WhyThreatsOffline">
        <translation>Sin conexión; %@ amenazas no se han revisado</translation>
    </message>
    <message id="HPS_WhyUnconfirmed">
        <translation>El estado actual aún no está confirmado</translation>
    </message>
    <message id="HPS_WhyUnreadable">
        <translation>El informe del agente no se puede leer</translation>
    </message>
    <message id="Ignored">
        <translation>Ignorado</translation>
    </message>
    <message id="Inspecting">
        <translation>Inspeccionando</translation>
    </message>
    <message id="KorvaleSONDAR">
        <translation>Korvale SONDAR</translation>
    </message>
    <message id="NoDriver">
        <translation>El controlador de protección no está conectado</translation>
    </message>
    <message id="NoNetwork">
        <translation>Sin conexión de red</translation>
    </message>
    <message id="NotRunning">
        <translation>El agente de protección no se está ejecutando</translation>
    </message>
    <message id="NotificationActionOpenLink">
        <translation>Abrir enlace</translation>
    </message>
    <message id="NotificationMessageAbnormalDetected">
        <translation>%@ se ha identificado como anómalo.</translation>
    </message>
    <message id="NotificationMessageAbnormalQuarantined">
        <translation>%@ se ha identificado como anómalo y se ha puesto en cuarentena.</translation>
    </message>
    <message id="NotificationMessageAbnormalsDetected">
        <translation>Se han identificado %@ archivos como anómalos.</translation>
    </message>
    <message id="NotificationMessageAbnormalsQuarantined">
        <translation>Se han identificado %@ archivos como anómalos y se han puesto en cuarentena.</translation>
    </message>
    <message id="NotificationMessageExploitDetectedPID">
        <translation>Intento de explotación en %@ (proceso %@): %@</translation>
    </message>
    <message id="NotificationMessageNewExploit">
        <translation>Se han detectado varios intentos de explotación nuevos.</translation>
    </message>
    <message id="NotificationMessagePolicyExpired">
        <translation>La directiva de protección de este dispositivo ha caducado. Póngase en contacto con su administrador.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidCompanyId">
        <translation>La directiva de protección se emitió para otra empresa. Póngase en contacto con su administrador.</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidSignature">
        <translation>La firma de la directiva de protección no es válida. Póngase en contacto con su administrador.</translation>
    </message>
    <message id="NotificationMessageUnsafeDetected">
        <translation>%@ se ha identificado como no seguro.</translation>
    </message>
    <message id="NotificationMessageUnsafeQuarantined">
        <translation>%@ se ha identificado como no seguro y se ha puesto en cuarentena.</translation>
    </message>
    <message id="NotificationMessageUnsafesDetected">
        <translation>Se han identificado %@ archivos como no seguros.</translation>
    </message>
    <message id="NotificationMessageUnsafesQuarantined">
        <translation>Se han identificado %@ archivos como no seguros y se han puesto en cuarentena.</translation>
    </message>
    <message id="NotificationSubtitleAbnormalDetected">
        <translation>Archivo anómalo detectado</translation>
    </message>
    <message id="NotificationSubtitleAbnormalQuarantined">
        <translation>Archivo anómalo en cuarentena</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsDetected">
        <translation>Archivos anómalos detectados</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsQuarantined">
        <translation>Archivos anómalos en cuarentena</translation>
    </message>
    <message id="NotificationSubtitleExecutionBlock">
        <translation>Ejecución bloqueada</translation>
    </message>
    <message id="NotificationSubtitleExploitAttemptDetected">
        <translation>Intento de explotación detectado</translation>
    </message>
    <message id="NotificationSubtitlePolicyExpired">
        <translation>Directiva caducada</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidCompanyId">
        <translation>Directiva de otra empresa</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidSignature">
        <translation>Firma de directiva no válida</translation>
    </message>
    <message id="NotificationSubtitleProcessActionBlocked">
        <translation>Acción de proceso bloqueada</translation>
    </message>
    <message id="NotificationSubtitleProcessTerminated">
        <translation>Proceso finalizado</translation>
    </message>
    <message id="NotificationSubtitleUnsafeDetected">
        <translation>Archivo no seguro detectado</translation>
    </message>
    <message id="NotificationSubtitleUnsafeQuarantined">
        <translation>Archivo no seguro en cuarentena</translation>
    </message>
    <message id="NotificationSubtitleUnsafesDetected">
        <translation>Archivos no seguros detectados</translation>
    </message>
    <message id="NotificationSubtitleUnsafesQuarantined">
        <translation>Archivos no seguros en cuarentena</translation>
    </message>
    <message id="OfflineMode">
        <translation>Sin conexión</translation>
    </message>
    <message id="ProductEP">
        <translation>Korvale Endpoint Protection</translation>
    </message>
    <message id="Quarantined">
        <translation>En cuarentena</translation>
    </message>
    <message id="Safe">
        <translation>Seguro</translation>
    </message>
    <message id="ShowDetailsMenu">
        <translation>Mostrar detalles</translation>
    </message>
    <message id="TM_All">
        <translation>Todo</translation>
    </message>
    <message id="TM_Background">
        <translation>Analizar en segundo plano</translation>
    </message>
    <message id="TM_Detection">
        <translation>Detección</translation>
    </message>
    <message id="TM_Error">
        <translation>Errores</translation>
    </message>
    <message id="TM_Folder">
        <translation>Analizar una carpeta…</translation>
    </message>
    <message id="TM_Information">
        <translation>Información</translation>
    </message>
    <message id="TM_Logging">
        <translation>Nivel de registro</translation>
    </message>
    <message id="TM_Stop">
        <translation>Detener el análisis</translation>
    </message>
    <message id="TM_Warning">
        <translation>Advertencias</translation>
    </message>
    <message id="Terminated">
        <translation>Finalizado</translation>
    </message>
    <message id="Unknown">
        <translation>Desconocido</translation>
    </message>
    <message id="Unsafe">
        <translation>No seguro</translation>
    </message>
    <message id="Url">
        <translation>https://korvale.example/</translation>
    </message>
    <message id="Waived">
        <translation>Autorizado</translation>
    </message>
</context>
<context>
    <message id="HPS_Cancel">
        <translation>Cancelar</translation>
    </message>
    <message id="HPS_Close">
        <translation>Cerrar</translation>
    </message>
    <message id="HPS_Export">
        <translation>Exportar…</translation>
    </message>
    <message id="HPS_ExportCancelled">
        <translation>La exportación se ha cancelado. Lo que había en «%@» no ha cambiado.</translation>
    </message>
    <message id="HPS_ExportDone">
        <translation>Filas escritas en «%@»: %@</translation>
    </message>
    <message id="HPS_ExportFailed">
        <translation>No se ha podido escribir «%@»: %@</translation>
    </message>
    <message id="HPS_ExportHint">
        <translation>Escribe las filas mostradas o las seleccionadas en un archivo CSV o JSON (Ctrl+S).</translation>
    </message>
    <message id="HPS_ExportNoFile">
        <translation>«%@» no es un archivo corriente de este equipo. No se ha escrito nada.</translation>
    </message>
    <message id="HPS_ExportNoRoom">
        <translation>No hay espacio para «%@» en su disco. Lo que había allí no ha cambiado.</translation>
    </message>
    <message id="HPS_ExportRuns">
        <translation>Escribiendo «%@»</translation>
    </message>
    <message id="HPS_ExportSelected">
        <translation>Filas seleccionadas (%@) como %@…</translation>
    </message>
    <message id="HPS_ExportShown">
        <translation>Filas mostradas (%@) como %@…</translation>
    </message>
    <message id="HPS_ExportTitle">
        <translation>Exportar la tabla</translation>
    </message>
</context>
<context>
    <message id="HPS_MoveColumnLeft">
        <translation>Mover la columna a la izquierda</translation>
    </message>
    <message id="HPS_MoveColumnRight">
        <translation>Mover la columna a la derecha</translation>
    </message>
    <message id="HPS_ResetOrder">
        <translation>Orden original de columnas y filas</translation>
    </message>
</context>
<context>
    <!-- DetailsPane -->
    <message id="HPS_ColScore">
        <translation>Puntuación</translation>
    </message>
    <message id="HPS_DoAbnormal">
        <translation>No lo abra si no sabe de dónde procede. Su administrador puede ponerlo en cuarentena, o autorizarlo si es una falsa alarma.</translation>
    </message>
    <message id="HPS_DoAlert">
        <translation>Cierre el programa, actualícelo y avise a su administrador, que también puede juzgar si es una falsa alarma.</translation>
    </message>
    <message id="HPS_DoDeviceAllowed">
        <translation>No hay que hacer nada. Si el dispositivo no es suyo, desconéctelo y avise a su administrador.</translation>
    </message>
    <message id="HPS_DoDeviceBlocked">
        <translation>Si lo necesita, pida a su administrador que lo autorice y facilítele los datos que figuran aquí.</translation>
    </message>
    <message id="HPS_DoEvent">
        <translation>Busque el archivo en la pestaña de amenazas: dice qué ha sido de él y qué hay que hacer. Si ya no está allí, no hay que hacer nada.</translation>
    </message>
    <message id="HPS_DoQuarantined">
        <translation>No hay que hacer nada. Si es una falsa alarma, su administrador puede restaurar el archivo y autorizarlo.</translation>
    </message>
    <message id="HPS_DoStopped">
        <translation>Actualice el programa. Si por esto deja de funcionar, avise a su administrador: puede ser una falsa alarma.</translation>
    </message>
    <message id="HPS_DoUnknown">
        <translation>Actualice KorvaleUI o pregunte a su administrador qué significa.</translation>
    </message>
    <message id="HPS_DoUnsafe">
        <translation>No lo abra. Avise a su administrador, que puede ponerlo en cuarentena, o autorizarlo si es una falsa alarma.</translation>
    </message>
    <message id="HPS_DoWaived">
        <translation>No hay que hacer nada. Si no sabe quién lo ha decidido, avise a su administrador.</translation>
    </message>
    <message id="HPS_MeansAbnormal">
        <translation>Este archivo se parece a otros dañinos, pero no se sabe si lo es. Sigue donde se encontró.</translation>
    </message>
    <message id="HPS_MeansAlert">
        <translation>El agente ha visto que este programa está siendo atacado y lo ha dejado seguir.</translation>
    </message>
    <message id="HPS_MeansBlocked">
        <translation>El agente ha detenido un ataque a este programa, que sigue en marcha.</translation>
    </message>
    <message id="HPS_MeansChanged">
        <translation>El agente juzga este archivo de otra manera que antes.</translation>
    </message>
    <message id="HPS_MeansDetected">
        <translation>El agente encontró este archivo en ese momento y lo consideró una amenaza.</translation>
    </message>
    <message id="HPS_MeansDeviceAllowed">
        <translation>La directiva permite este dispositivo: se puede usar aquí.</translation>
    </message>
    <message id="HPS_MeansDeviceBlocked">
        <translation>La directiva no permite este dispositivo: no se puede usar aquí.</translation>
    </message>
    <message id="HPS_MeansIgnored">
        <translation>El agente ha visto aquí algo que se le ha indicado que ignore.</translation>
    </message>
    <message id="HPS_MeansQuarantined">
        <translation>El agente ha retirado este archivo y lo guarda donde no puede hacer daño.</translation>
    </message>
    <message id="HPS_MeansRemoved">
        <translation>Este archivo se ha eliminado del dispositivo.</translation>
    </message>
    <message id="HPS_MeansTerminated">
        <translation>El agente ha cerrado este programa porque estaba siendo atacado.</translation>
    </message>
    <message id="HPS_MeansUnknown">
        <translation>El agente comunica un estado que esta versión de KorvaleUI no conoce.</translation>
    </message>
    <message id="HPS_MeansUnsafe">
        <translation>El agente considera dañino este archivo. Sigue donde se encontró.</translation>
    </message>
    <message id="HPS_MeansWaived">
        <translation>Alguien ha decidido que este archivo puede quedarse, así que el agente no lo toca.</translation>
    </message>
    <message id="HPS_PaneClose">
        <translation>Cerrar los detalles</translation>
    </message>
    <message id="HPS_PaneCopy">
        <translation>Copiar</translation>
    </message>
    <message id="HPS_PaneCopyPath">
        <translation>Copiar ruta</translation>
    </message>
    <message id="HPS_PaneCut">
        <translation>Los textos muy largos se acortan aquí; «Copiar» los copia enteros.</translation>
    </message>
    <message id="HPS_PaneDo">
        <translation>Qué hacer</translation>
    </message>
    <message id="HPS_PaneGone">
        <translation>Esta fila ya no está en la tabla. Debajo figura lo último que decía.</translation>
    </message>
    <message id="HPS_PaneMeans">
        <translation>Significado</translation>
    </message>
    <message id="HPS_PaneMore">
        <translation>… y %@ más; «Copiar ruta» las copia todas.</translation>
    </message>
    <message id="HPS_PaneNoManager">
        <translation>No se pudo abrir ningún gestor de archivos.</translation>
    </message>
    <message id="HPS_PanePath">
        <translation>Ruta</translation>
    </message>
    <message id="HPS_PaneSelectAll">
        <translation>Seleccionar todo</translation>
    </message>
    <message id="HPS_PaneShow">
        <translation>Mostrar en el gestor de archivos</translation>
    </message>
</context>
</TS>
