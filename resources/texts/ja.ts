<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja_JP">
<context>
    <message id="Abnormal">
        <translation>異常</translation>
    </message>
    <message id="About">
        <translation>KorvaleUI について</translation>
    </message>
    <message id="AboutPolicy">
        <translation>ポリシー:</translation>
    </message>
    <message id="AboutPolicyLastUpdated">
        <translation>ポリシーの最終更新:</translation>
    </message>
    <message id="AboutVersion">
        <translation>バージョン %@</translation>
    </message>
    <message id="Alert">
        <translation>アラート</translation>
    </message>
    <message id="Analyzed">
        <translation>分析済みファイル:</translation>
    </message>
    <message id="BTDFinishedScanningMessage">
        <translation>バックグラウンドスキャンが完了しました。</translation>
    </message>
    <message id="BTDFinishedScanningTitle">
        <translation>バックグラウンドスキャン完了</translation>
    </message>
    <message id="Blocked">
        <translation>ブロック済み</translation>
    </message>
    <message id="CM_CheckForPolicyUpdate">
        <translation>ポリシーの更新を確認</translation>
    </message>
    <message id="CM_ShowNotifications">
        <translation>通知を表示</translation>
    </message>
    <message id="CategoryTooltip">
        <translation>エージェントによるこの項目の分類、または実行された処置</translation>
    </message>
    <message id="CheckForUpdates">
        <translation>更新を確認</translation>
    </message>
    <message id="ChooseFolderTitle">
        <translation>スキャンするフォルダーを選択</translation>
    </message>
    <message id="Company">
        <translation>Korvale</translation>
    </message>
    <message id="DefaultPolicyMode">
        <translation>標準</translation>
    </message>
    <message id="DefaultPolicyName">
        <translation>既定</translation>
    </message>
    <message id="EventStrExploitApplication">
        <translation>アプリケーション:</translation>
    </message>
    <message id="EventStrExploitViolation">
        <translation>違反:</translation>
    </message>
    <message id="EventStrThreat">
        <translation>脅威</translation>
    </message>
    <message id="EventThreatStringFromValueDetected">
        <translation>検出</translation>
    </message>
    <message id="EventThreatStringFromValueNone">
        <translation>なし</translation>
    </message>
    <message id="EventThreatStringFromValueRemoved">
        <translation>削除済み</translation>
    </message>
    <message id="EventThreatStringFromValueRunning">
        <translation>実行中</translation>
    </message>
    <message id="EventThreatStringFromValueStateChange">
        <translation>状態の変更</translation>
    </message>
    <message id="Exit">
        <translation>終了</translation>
    </message>
    <message id="FoundTooltip">
        <translation>検出された回数</translation>
    </message>
    <message id="FullAccess">
        <translation>フルアクセス</translation>
    </message>
    <message id="HPS_Advice">
        <translation>この状態の意味</translation>
    </message>
    <message id="HPS_ClearNotifications">
        <translation>一覧を消去</translation>
    </message>
    <message id="HPS_ColAction">
        <translation>処置</translation>
    </message>
    <message id="HPS_ColCategory">
        <translation>カテゴリ</translation>
    </message>
    <message id="HPS_ColDetails">
        <translation>詳細</translation>
    </message>
    <message id="HPS_ColDeviceType">
        <translation>デバイスの種類</translation>
    </message>
    <message id="HPS_ColEvent">
        <translation>イベント</translation>
    </message>
    <message id="HPS_ColFile">
        <translation>ファイル</translation>
    </message>
    <message id="HPS_ColFound">
        <translation>検出数</translation>
    </message>
    <message id="HPS_ColID">
        <translation>ID</translation>
    </message>
    <message id="HPS_ColPID">
        <translation>PID</translation>
    </message>
    <message id="HPS_ColProcess">
        <translation>プロセス</translation>
    </message>
    <message id="HPS_ColProductID">
        <translation>製品 ID</translation>
    </message>
    <message id="HPS_ColSerialNumber">
        <translation>シリアル番号</translation>
    </message>
    <message id="HPS_ColVendorID">
        <translation>ベンダー ID</translation>
    </message>
    <message id="HPS_ColWhen">
        <translation>日時</translation>
    </message>
    <message id="HPS_CopyNotification">
        <translation>コピー</translation>
    </message>
    <message id="HPS_Credits">
        <translation>ポリシーの詳細</translation>
    </message>
    <message id="HPS_EmptyAgentAway">
        <translation>保護エージェントが実行されていないため、何か見つかったかどうかは不明です。</translation>
    </message>
    <message id="HPS_EmptyDevices">
        <translation>外部デバイスの動作がここに表示されます。</translation>
    </message>
    <message id="HPS_EmptyEvents">
        <translation>エージェントが記録したイベントがここに表示されます。</translation>
    </message>
    <message id="HPS_EmptyExploits">
        <translation>エクスプロイトの試みは見つかっていません。</translation>
    </message>
    <message id="HPS_EmptyFind">
        <translation>これらの語をすべて含む行はありません。Esc キーですべての行に戻ります。</translation>
    </message>
    <message id="HPS_EmptyNotRead">
        <translation>エージェントからまだ報告がないため、何か見つかったかどうかは不明です。</translation>
    </message>
    <message id="HPS_EmptyThreats">
        <translation>脅威は見つかっていません。</translation>
    </message>
    <message id="HPS_EmptyUnreadable">
        <translation>エージェントの報告を読み取れないため、何か見つかったかどうかは不明です。</translation>
    </message>
    <message id="HPS_Events">
        <translation>イベント</translation>
    </message>
    <message id="HPS_Exploits">
        <translation>エクスプロイト</translation>
    </message>
    <message id="HPS_ExternalDevices">
        <translation>外部デバイス</translation>
    </message>
    <message id="HPS_Find">
        <translation>検索</translation>
    </message>
    <message id="HPS_FindClear">
        <translation>すべての行を表示</translation>
    </message>
    <message id="HPS_FindCount">
        <translation>%@ / %@</translation>
    </message>
    <message id="HPS_FindCountName">
        <translation>表示中の行</translation>
    </message>
    <message id="HPS_FindHint">
        <translation>これらの語をすべて含む行を表示します (Ctrl+F)。Esc キーですべての行に戻ります。</translation>
    </message>
    <message id="HPS_HeaderHint">
        <translation>スペースキーでこの列を基準に並べ替えます。メニューキーで列を移動できます。</translation>
    </message>
    <message id="HPS_LastScan">
        <translation>前回のバックグラウンドスキャンの終了: %@</translation>
    </message>
    <message id="HPS_LastScanName">
        <translation>前回のバックグラウンドスキャン</translation>
    </message>
    <message id="HPS_Logo">
        <translation>Korvale のロゴ</translation>
    </message>
    <message id="HPS_LogoToolTip">
        <translation>Korvale のホームページを開く</translation>
    </message>
    <message id="HPS_Menu">
        <translation>メニュー</translation>
    </message>
    <message id="HPS_MenuToolTip">
        <translation>KorvaleUI のメニューを開く</translation>
    </message>
    <message id="HPS_NoNotifications">
        <translation>通知はまだありません。</translation>
    </message>
    <message id="HPS_NotificationHeldBack">
        <translation>通知がオフになっているため、表示されませんでした。</translation>
    </message>
    <message id="HPS_Notifications">
        <translation>通知</translation>
    </message>
    <message id="HPS_NotificationsHint">
        <translation>これまでの通知の内容を表示します (Ctrl+N)</translation>
    </message>
    <message id="HPS_NowAgentAway">
        <translation>エージェントが再び動作するまで、このデバイスでは何も監視されません。表示されているのは最後に分かっていた状態です。デバイスを再起動するか、エージェントのサービスの開始を管理者に依頼してください。</translation>
    </message>
    <message id="HPS_NowConnectionUnknown">
        <translation>エージェントは接続の有無を報告していません。最後に取得した情報で動作している可能性があります。操作は不要ですが、何時間も続く場合はネットワーク接続を確認してください。</translation>
    </message>
    <message id="HPS_NowDriverMissing">
        <translation>ドライバーがないと、エージェントはファイルが開かれるときの監視ができません。デバイスを再起動してください。改善しない場合は管理者に連絡してください。現在のカーネルに合わないドライバーの可能性があります。</translation>
    </message>
    <message id="HPS_NowExploits">
        <translation>「エクスプロイト」タブを開くと、攻撃されたプログラムと、エージェントが停止したかどうかが分かります。そのプログラムを終了し、更新して、管理者に連絡してください。</translation>
    </message>
    <message id="HPS_NowNotReported">
        <translation>何かが検出されたかどうかはまだ分かりません。エージェントはデバイスを最初に調べた後に報告します。バックグラウンドスキャンで調べさせることができます。</translation>
    </message>
    <message id="HPS_NowOffline">
        <translation>エージェントは最後に取得した情報で保護しています。ネットワーク接続を確認してください。ほかのプログラムが接続できる場合は管理者に連絡してください。</translation>
    </message>
    <message id="HPS_NowThreats">
        <translation>「脅威」タブを開くと、各ファイルに対してエージェントが行った処置が分かります。隔離されていないファイルは開かないでください。誤検知と思われる場合も管理者に連絡してください。</translation>
    </message>
    <message id="HPS_NowUnconfirmed">
        <translation>エージェントは動作しており、次の報告を待っています。しばらくお待ちください。続く場合はデバイスを再起動してください。</translation>
    </message>
    <message id="HPS_NowUnreadable">
        <translation>何かが検出されたかどうか分かりません。ディスクがいっぱいか、ファイルが壊れている可能性があります。空き容量を増やしてデバイスを再起動するか、管理者に連絡してください。</translation>
    </message>
    <message id="HPS_ProtectionState">
        <translation>保護の状態</translation>
    </message>
    <message id="HPS_Quarantined">
        <translation>隔離済み:</translation>
    </message>
    <message id="HPS_SortedAscending">
        <translation>昇順</translation>
    </message>
    <message id="HPS_SortedDescending">
        <translation>降順</translation>
    </message>
    <message id="HPS_StatusLine">
        <translation>エージェントの状態</translation>
    </message>
    <message id="HPS_StatusNoAnswer">
        <translation>KorvaleUI が応答しません</translation>
    </message>
    <message id="HPS_StatusNotRunning">
        <translation>KorvaleUI は実行されていません</translation>
    </message>
    <message id="HPS_StatusUsage">
        <translation>使い方が違います: --status と --json、--bar waybar、--bar i3status-rs のいずれか、および --watch。--help を参照してください。</translation>
    </message>
    <message id="HPS_TableHint">
        <translation>Enter で行の詳細を表示します。Ctrl+C で選択した行をコピーします。Shift+F1 でセルの詳細を表示します。</translation>
    </message>
    <message id="HPS_Tabs">
        <translation>検出結果</translation>
    </message>
    <message id="HPS_TermBackground">
        <translation>エージェントがバックグラウンドスキャンを開始しました。</translation>
    </message>
    <message id="HPS_TermFound">
        <translation>見つかった脅威: %@</translation>
    </message>
    <message id="HPS_TermGoesOn">
        <translation>エージェントはスキャンを続けます。--background-scan stop で停止します。</translation>
    </message>
    <message id="HPS_TermLeft">
        <translation>完了する前にエージェントが終了しました。</translation>
    </message>
    <message id="HPS_TermMore">
        <translation>… 他 %@ 件</translation>
    </message>
    <message id="HPS_TermNoAgent">
        <translation>エージェントが実行されていません。</translation>
    </message>
    <message id="HPS_TermNoAnswer">
        <translation>エージェントが応答しません。</translation>
    </message>
    <message id="HPS_TermNoFolder">
        <translation>%@ はスキャンできるフォルダーではありません: %@</translation>
    </message>
    <message id="HPS_TermNoUpdater">
        <translation>アップデーターからの通知はありませんでした。</translation>
    </message>
    <message id="HPS_TermNotUnderstood">
        <translation>エージェントの応答を解釈できません。</translation>
    </message>
    <message id="HPS_TermNotUtf8">
        <translation>%@ をスキャンできません: 名前が正しい UTF-8 ではありません。</translation>
    </message>
    <message id="HPS_TermNothing">
        <translation>エージェントから脅威の報告はありませんでした。</translation>
    </message>
    <message id="HPS_TermRefused">
        <translation>エージェントが拒否しました: %@</translation>
    </message>
    <message id="HPS_TermSays">
        <translation>エージェントからの通知: %@</translation>
    </message>
    <message id="HPS_TermScan">
        <translation>エージェントがスキャンします: %@</translation>
    </message>
    <message id="HPS_TermScanName">
        <translation>脅威をスキャン</translation>
    </message>
    <message id="HPS_TermSilent">
        <translation>エージェントから 5 分間通知がありません。</translation>
    </message>
    <message id="HPS_TermStop">
        <translation>エージェントがスキャンを停止します。</translation>
    </message>
    <message id="HPS_TermStopped">
        <translation>実行中のスキャンはありません。</translation>
    </message>
    <message id="HPS_TermUpdates">
        <translation>エージェントが更新を確認します。</translation>
    </message>
    <message id="HPS_TermUsage">
        <translation>使い方が違います: --check-updates、--scan フォルダー…、--background-scan start または stop。--help を参照してください。</translation>
    </message>
    <message id="HPS_Threats">
        <translation>脅威</translation>
    </message>
    <message id="HPS_WhatNow">
        <translation>これは何を意味しますか?</translation>
    </message>
    <message id="HPS_WhyAgentAway">
        <translation>保護エージェントが実行されていません</translation>
    </message>
    <message id="HPS_WhyConnectionUnknown">
        <translation>エージェントは動作中です。新しい検出はありません</translation>
    </message>
    <message id="HPS_WhyDriverMissing">
        <translation>エージェントのドライバーがありません</translation>
    </message>
    <message id="HPS_WhyExploit">
        <translation>未確認のエクスプロイトの試みが 1 件あります</translation>
    </message>
    <message id="HPS_WhyExploits">
        <translation>未確認のエクスプロイトの試みが %@ 件あります</translation>
    </message>
    <message id="HPS_WhyGood">
        <translation>接続済み。新しい検出はありません</translation>
    </message>
    <message id="HPS_WhyNotReported">
        <translation>エージェントからの報告がまだありません</translation>
    </message>
    <message id="HPS_WhyOffline">
        <translation>保護エージェントが接続されていません</translation>
    </message>
    <message id="HPS_WhyThreat">
        <translation>未確認の脅威が 1 件あります</translation>
    </message>
    <message id="HPS_WhyThreatOffline">
        <translation>未接続。未確認の脅威が 1 件あります</translation>
    </message>
    <message id="HPS_WhyThreats">
        <translation>未確認の脅威が %@ 件あります</translation>
    </message>
    <message id="HPS_WhyThreatsOffline">
        <translation>未接続。未確認の脅威が %@ 件あります</translation>
    </message>
    <message id="HPS_WhyUnconfirmed">
        <translation>現在の状態はまだ確認されていません</translation>
    </message>
    <message id="HPS_WhyUnreadable">
        <translation>エージェントの報告を読み取れません</translation>
    </message>
    <message id="Ignored">
        <translation>無視</translation>
    </message>
    <message id="Inspecting">
        <translation>検査中:</translation>
    </message>
    <message id="KorvaleSONDAR">
        <translation>Korvale SONDAR</translation>
    </message>
    <message id="NoDriver">
        <translation>保護ドライバーが接続されていません</translation>
    </message>
    <message id="NoNetwork">
        <translation>ネットワークに接続されていません</translation>
    </message>
    <message id="NotRunning">
        <translation>保護エージェントが実行されていません</translation>
    </message>
    <message id="NotificationActionOpenLink">
        <translation>リンクを開く</translation>
    </message>
    <message id="NotificationMessageAbnormalDetected">
        <translation>%@ は異常と判定されました。</translation>
    </message>
    <message id="NotificationMessageAbnormalQuarantined">
        <translation>%@ は異常と判定され、隔離されました。</translation>
    </message>
    <message id="NotificationMessageAbnormalsDetected">
        <translation>%@ 個のファイルが異常と判定されました。</translation>
    </message>
    <message id="NotificationMessageAbnormalsQuarantined">
        <translation>%@ 個のファイルが異常と判定され、隔離されました。</translation>
    </message>
    <message id="NotificationMessageExploitDetectedPID">
        <translation>%@ (プロセス %@) でエクスプロイトの試み: %@</translation>
    </message>
    <message id="NotificationMessageNewExploit">
        <translation>新しいエクスプロイトの試みが複数検出されました。</translation>
    </message>
    <message id="NotificationMessagePolicyExpired">
        <translation>このデバイスの保護ポリシーの有効期限が切れています。管理者に連絡してください。</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidCompanyId">
        <translation>保護ポリシーは別の会社に対して発行されたものです。管理者に連絡してください。</translation>
    </message>
    <message id="NotificationMessagePolicyInvalidSignature">
        <translation>保護ポリシーの署名が無効です。管理者に連絡してください。</translation>
    </message>
    <message id="NotificationMessageUnsafeDetected">
        <translation>%@ は危険と判定されました。</translation>
    </message>
    <message id="NotificationMessageUnsafeQuarantined">
        <translation>%@ は危険と判定され、隔離されました。</translation>
    </message>
    <message id="NotificationMessageUnsafesDetected">
        <translation>%@ 個のファイルが危険と判定されました。</translation>
    </message>
    <message id="NotificationMessageUnsafesQuarantined">
        <translation>%@ 個のファイルが危険と判定され、隔離されました。</translation>
    </message>
    <message id="NotificationSubtitleAbnormalDetected">
        <translation>異常なファイルを検出</translation>
    </message>
    <message id="NotificationSubtitleAbnormalQuarantined">
        <translation>異常なファイルを隔離</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsDetected">
        <translation>複数の異常なファイルを検出</translation>
    </message>
    <message id="NotificationSubtitleAbnormalsQuarantined">
        <translation>複数の異常なファイルを隔離</translation>
    </message>
    <message id="NotificationSubtitleExecutionBlock">
        <translation>実行をブロックしました</translation>
    </message>
    <message id="NotificationSubtitleExploitAttemptDetected">
        <translation>エクスプロイトの試みを検出</translation>
    </message>
    <message id="NotificationSubtitlePolicyExpired">
        <translation>ポリシーの有効期限切れ</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidCompanyId">
        <translation>別の会社のポリシー</translation>
    </message>
    <message id="NotificationSubtitlePolicyInvalidSignature">
        <translation>ポリシーの署名が無効</translation>
    </message>
    <message id="NotificationSubtitleProcessActionBlocked">
        <translation>プロセスの操作をブロックしました</translation>
    </message>
    <message id="NotificationSubtitleProcessTerminated">
        <translation>プロセスを終了しました</translation>
    </message>
    <message id="NotificationSubtitleUnsafeDetected">
        <translation>危険なファイルを検出</translation>
    </message>
    <message id="NotificationSubtitleUnsafeQuarantined">
        <translation>危険なファイルを隔離</translation>
    </message>
    <message id="NotificationSubtitleUnsafesDetected">
        <translation>複数の危険なファイルを検出</translation>
    </message>
    <message id="NotificationSubtitleUnsafesQuarantined">
        <translation>複数の危険なファイルを隔離</translation>
    </message>
    <message id="OfflineMode">
        <translation>オフライン</translation>
    </message>
    <message id="ProductEP">
        <translation>Korvale Endpoint Protection</translation>
    </message>
    <message id="Quarantined">
        <translation>隔離済み</translation>
    </message>
    <message id="Safe">
        <translation>安全</translation>
    </message>
    <message id="ShowDetailsMenu">
        <translation>詳細を表示</translation>
    </message>
    <message id="TM_All">
        <translation>すべて</translation>
    </message>
    <message id="TM_Background">
        <translation>バックグラウンドでスキャン</translation>
    </message>
    <message id="TM_Detection">
        <translation>検出</translation>
    </message>
    <message id="TM_Error">
        <translation>エラー</translation>
    </message>
    <message id="TM_Folder">
        <translation>フォルダーをスキャン…</translation>
    </message>
    <message id="TM_Information">
        <translation>情報</translation>
    </message>
    <message id="TM_Logging">
        <translation>ログレベル</translation>
    </message>
    <message id="TM_Stop">
        <translation>スキャンを停止</translation>
    </message>
    <message id="TM_Warning">
        <translation>警告</translation>
    </message>
    <message id="Terminated">
        <translation>強制終了</translation>
    </message>
    <message id="Unknown">
        <translation>不明</translation>
    </message>
    <message id="Unsafe">
        <translation>危険</translation>
    </message>
    <message id="Url">
        <translation>https://korvale.example/</translation>
    </message>
    <message id="Waived">
        <translation>許可済み</translation>
    </message>
</context>
<context>
    <message id="HPS_Cancel">
        <translation>キャンセル</translation>
    </message>
    <message id="HPS_Close">
        <translation>閉じる</translation>
    </message>
    <message id="HPS_Export">
        <translation>エクスポート…</translation>
    </message>
    <message id="HPS_ExportCancelled">
        <translation>エクスポートを取り消しました。「%@」にあったものは変わっていません。</translation>
    </message>
    <message id="HPS_ExportDone">
        <translation>「%@」に書き込んだ行数: %@</translation>
    </message>
    <message id="HPS_ExportFailed">
        <translation>「%@」に書き込めませんでした: %@</translation>
    </message>
    <message id="HPS_ExportHint">
        <translation>表示中または選択した行を CSV か JSON のファイルに書き込みます (Ctrl+S)。</translation>
    </message>
    <message id="HPS_ExportNoFile">
        <translation>「%@」はこのコンピューターの通常のファイルではありません。何も書き込みませんでした。</translation>
    </message>
    <message id="HPS_ExportNoRoom">
        <translation>「%@」のためのディスクの空きがありません。そこにあったものは変わっていません。</translation>
    </message>
    <message id="HPS_ExportRuns">
        <translation>「%@」に書き込み中</translation>
    </message>
    <message id="HPS_ExportSelected">
        <translation>選択した行 (%@) を %@ で…</translation>
    </message>
    <message id="HPS_ExportShown">
        <translation>表示中の行 (%@) を %@ で…</translation>
    </message>
    <message id="HPS_ExportTitle">
        <translation>表のエクスポート</translation>
    </message>
</context>
<context>
    <message id="HPS_MoveColumnLeft">
        <translation>列を左へ移動</translation>
    </message>
    <message id="HPS_MoveColumnRight">
        <translation>列を右へ移動</translation>
    </message>
    <message id="HPS_ResetOrder">
        <translation>列と行を元の順序に戻す</translation>
    </message>
</context>
<context>
    <!-- DetailsPane -->
    <message id="HPS_ColScore">
        <translation>スコア</translation>
    </message>
    <message id="HPS_DoAbnormal">
        <translation>入手元が分からない場合は開かないでください。管理者は、このファイルを隔離することも、誤検知であれば許可することもできます。</translation>
    </message>
    <message id="HPS_DoAlert">
        <translation>プログラムを終了し、更新して、管理者に連絡してください。誤検知かどうかも管理者が判断できます。</translation>
    </message>
    <message id="HPS_DoDeviceAllowed">
        <translation>何もする必要はありません。自分のデバイスでない場合は取り外し、管理者に連絡してください。</translation>
    </message>
    <message id="HPS_DoDeviceBlocked">
        <translation>必要な場合は、ここに表示されている内容を管理者に伝え、許可を依頼してください。</translation>
    </message>
    <message id="HPS_DoEvent">
        <translation>「脅威」タブでこのファイルを探すと、現在の状態と対処方法が分かります。そこにない場合は、何もする必要はありません。</translation>
    </message>
    <message id="HPS_DoQuarantined">
        <translation>何もする必要はありません。誤検知の場合、管理者はファイルを元に戻して許可できます。</translation>
    </message>
    <message id="HPS_DoStopped">
        <translation>プログラムを更新してください。このために動作しなくなった場合は、誤検知の可能性があるため管理者に連絡してください。</translation>
    </message>
    <message id="HPS_DoUnknown">
        <translation>KorvaleUI を更新するか、意味を管理者に確認してください。</translation>
    </message>
    <message id="HPS_DoUnsafe">
        <translation>開かないでください。管理者に連絡してください。管理者は、このファイルを隔離することも、誤検知であれば許可することもできます。</translation>
    </message>
    <message id="HPS_DoWaived">
        <translation>何もする必要はありません。誰が決めたのか分からない場合は、管理者に連絡してください。</translation>
    </message>
    <message id="HPS_MeansAbnormal">
        <translation>有害なファイルに似ていますが、有害とは確認されていません。見つかった場所にまだあります。</translation>
    </message>
    <message id="HPS_MeansAlert">
        <translation>このプログラムが攻撃されていることをエージェントが検出しましたが、実行は続けさせています。</translation>
    </message>
    <message id="HPS_MeansBlocked">
        <translation>このプログラムへの攻撃をエージェントが阻止しました。プログラムは動作を続けています。</translation>
    </message>
    <message id="HPS_MeansChanged">
        <translation>このファイルに対するエージェントの判定が変わりました。</translation>
    </message>
    <message id="HPS_MeansDetected">
        <translation>この時刻にエージェントがこのファイルを検出し、脅威と判定しました。</translation>
    </message>
    <message id="HPS_MeansDeviceAllowed">
        <translation>このデバイスはポリシーで許可されており、使用できます。</translation>
    </message>
    <message id="HPS_MeansDeviceBlocked">
        <translation>このデバイスはポリシーで許可されていないため、使用できません。</translation>
    </message>
    <message id="HPS_MeansIgnored">
        <translation>無視するよう設定されている動作をエージェントが検出しました。</translation>
    </message>
    <message id="HPS_MeansQuarantined">
        <translation>エージェントがこのファイルを移動し、害を及ぼさない場所に保管しています。</translation>
    </message>
    <message id="HPS_MeansRemoved">
        <translation>このファイルはデバイスから削除されました。</translation>
    </message>
    <message id="HPS_MeansTerminated">
        <translation>攻撃されていたため、エージェントがこのプログラムを終了しました。</translation>
    </message>
    <message id="HPS_MeansUnknown">
        <translation>このバージョンの KorvaleUI が認識できない状態をエージェントが報告しています。</translation>
    </message>
    <message id="HPS_MeansUnsafe">
        <translation>エージェントはこのファイルを有害と判定しました。見つかった場所にまだあります。</translation>
    </message>
    <message id="HPS_MeansWaived">
        <translation>このファイルは残してよいと判断されているため、エージェントは何もしません。</translation>
    </message>
    <message id="HPS_PaneClose">
        <translation>詳細を閉じる</translation>
    </message>
    <message id="HPS_PaneCopy">
        <translation>コピー</translation>
    </message>
    <message id="HPS_PaneCopyPath">
        <translation>パスをコピー</translation>
    </message>
    <message id="HPS_PaneCut">
        <translation>非常に長いテキストは短く表示されています。「コピー」では全体がコピーされます。</translation>
    </message>
    <message id="HPS_PaneDo">
        <translation>対処方法</translation>
    </message>
    <message id="HPS_PaneGone">
        <translation>この行は表からなくなりました。以下は最後に表示されていた内容です。</translation>
    </message>
    <message id="HPS_PaneMeans">
        <translation>意味</translation>
    </message>
    <message id="HPS_PaneMore">
        <translation>… ほか %@ 件。「パスをコピー」ではすべてコピーされます。</translation>
    </message>
    <message id="HPS_PaneNoManager">
        <translation>ファイルマネージャーを開けませんでした。</translation>
    </message>
    <message id="HPS_PanePath">
        <translation>パス</translation>
    </message>
    <message id="HPS_PaneSelectAll">
        <translation>すべて選択</translation>
    </message>
    <message id="HPS_PaneShow">
        <translation>ファイルマネージャーで表示</translation>
    </message>
</context>
</TS>
