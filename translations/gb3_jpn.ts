<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Backup</name>
    <message>
        <source>%1; already there</source>
        <translation>%1 / 同じ内容で保存済みです</translation>
    </message>
    <message>
        <source>none</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>not read: its size or kind is not known</source>
        <translation>読み出していません: サイズまたは種類が不明です</translation>
    </message>
    <message>
        <source>not read: %1</source>
        <translation>読み出していません: %1</translation>
    </message>
    <message>
        <source>not read: after a ROM of this size an MMM01 shows its save in pieces until it is taken out</source>
        <translation>読み出していません: このサイズの ROM を読み出した後の MMM01 では、カートリッジを抜くまでセーブデータが断片的にしか見えません</translation>
    </message>
    <message>
        <source>not read: no table knows this game</source>
        <translation>読み出していません: ゲームデータベースにないゲームです</translation>
    </message>
    <message>
        <source>not read: the cartridge was changed meanwhile</source>
        <translation>読み出していません: 途中でカートリッジが差し替えられました</translation>
    </message>
    <message>
        <source>not read twice: %1</source>
        <translation>2 回目の読み出しは完了していません: %1</translation>
    </message>
    <message>
        <source>The first read is in %1.</source>
        <translation>1 回目の読み出し結果は %1 にあります。</translation>
    </message>
    <message>
        <source>not written: %1</source>
        <translation>保存していません: %1</translation>
    </message>
    <message>
        <source>ROM, %1</source>
        <translation>[ROM] %1</translation>
    </message>
    <message>
        <source>The cartridge has no ROM that can be read.</source>
        <translation>カートリッジに読み出せる ROM がありません。</translation>
    </message>
    <message>
        <source>save, %1</source>
        <translation>[セーブデータ] %1</translation>
    </message>
    <message>
        <source>The cartridge has no save that can be read.</source>
        <translation>カートリッジに読み出せるセーブデータがありません。</translation>
    </message>
    <message>
        <source>No cartridge was recognised. Push it in again, clean its contacts, or choose the settings and use Dump.</source>
        <translation>カートリッジを認識できませんでした。差し直すか、端子を清掃するか、設定を選んで「ROM 吸い出し」を使ってください。</translation>
    </message>
    <message>
        <source>The save was not read.</source>
        <translation>セーブデータは読み出していません。</translation>
    </message>
</context>
<context>
    <name>Console</name>
    <message>
        <source>Log</source>
        <translation>ログ</translation>
    </message>
    <message>
        <source>What has happened; the newest line is the last</source>
        <translation>これまでの経過 (最新の行が最後)</translation>
    </message>
</context>
<context>
    <name>CornerActions</name>
    <message>
        <source>A reader was plugged in, so the demo reader is off.</source>
        <translation>リーダーが接続されたため、デモ用リーダーをオフにしました。</translation>
    </message>
    <message>
        <source>The demo reader is on: no real cartridge is read or written.</source>
        <translation>デモ用リーダーを使用中です。実物のカートリッジは読み書きしません。</translation>
    </message>
    <message>
        <source>The demo reader is off.</source>
        <translation>デモ用リーダーをオフにしました。</translation>
    </message>
    <message>
        <source>Checking the ROM file:</source>
        <translation>ROM ファイルを確認しています:</translation>
    </message>
    <message>
        <source>Check a ROM file</source>
        <translation>ROM ファイルを確認</translation>
    </message>
    <message>
        <source>ROM files (*.gb *.gbc *.gba *.sgb)</source>
        <translation>ROM ファイル (*.gb *.gbc *.gba *.sgb)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>すべてのファイル (*)</translation>
    </message>
    <message>
        <source>Back up the cartridge into...</source>
        <translation>カートリッジのバックアップ先...</translation>
    </message>
    <message>
        <source>Backing up the cartridge into the folder:</source>
        <translation>カートリッジを次のフォルダーにバックアップしています:</translation>
    </message>
    <message>
        <source>The backup folder is %1</source>
        <translation>バックアップフォルダー: %1</translation>
    </message>
</context>
<context>
    <name>Differences</name>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 ほか %2 個</translation>
    </message>
    <message>
        <source>bank %1 of %2</source>
        <translation>全 %2 バンク中のバンク %1 のみ</translation>
    </message>
    <message>
        <source>banks %1 of %2</source>
        <translation>全 %2 バンク中のバンク %1</translation>
    </message>
    <message>
        <source>4 KiB block %1 of %2</source>
        <translation>全 %2 ブロック中の 4 KiB ブロック %1 のみ</translation>
    </message>
    <message>
        <source>4 KiB blocks %1 of %2</source>
        <translation>全 %2 ブロック中の 4 KiB ブロック %1</translation>
    </message>
    <message>
        <source>64 KiB block %1 of %2</source>
        <translation>全 %2 ブロック中の 64 KiB ブロック %1 のみ</translation>
    </message>
    <message>
        <source>64 KiB blocks %1 of %2</source>
        <translation>全 %2 ブロック中の 64 KiB ブロック %1</translation>
    </message>
    <message>
        <source>%1 of %2 bytes, at %3</source>
        <translation>全 %2 バイト中の %1 バイト、位置 %3</translation>
    </message>
    <message>
        <source>%1 of %2 bytes, from %3 to %4</source>
        <translation>全 %2 バイト中の %1 バイト、位置 %3 から %4 の間</translation>
    </message>
</context>
<context>
    <name>DriveAdvice</name>
    <message>
        <source>Is the folder that GBDRIVER_DRIVES names there, and the reader mounted on it?</source>
        <translation>GBDRIVER_DRIVES に指定したフォルダーがあり、そこにリーダーがマウントされていますか?</translation>
    </message>
    <message>
        <source>Unset GBDRIVER_DRIVES to look at every mounted removable drive.</source>
        <translation>マウント済みのリムーバブルドライブをすべて調べるには、GBDRIVER_DRIVES の設定を解除してください。</translation>
    </message>
    <message>
        <source>Is the reader plugged in and mounted? Only mounted drives are seen: &quot;lsblk&quot;
shows both, and &quot;udisksctl mount -b /dev/sdX1&quot; mounts one.</source>
        <translation>リーダーは接続され、マウントされていますか? マウント済みのドライブだけが対象です。
「lsblk」で両方を確認でき、「udisksctl mount -b /dev/sdX1」でマウントできます。</translation>
    </message>
    <message>
        <source>Does the system not call it removable, declare its folder:</source>
        <translation>システムがリムーバブルと認識しない場合は、次のようにフォルダーを指定してください:</translation>
    </message>
    <message>
        <source>May you write there? A mount made by root needs the option uid=.</source>
        <translation>書き込み権限はありますか? root がマウントした場合は、オプション uid= が必要です。</translation>
    </message>
    <message>
        <source>GBDRIVER_DRIVES is set: only the drives that it declares are looked at.</source>
        <translation>GBDRIVER_DRIVES が設定されているため、そこに指定されたドライブだけを調べます。</translation>
    </message>
    <message>
        <source>Is the reader plugged in, and does the Explorer show it as a removable drive?</source>
        <translation>リーダーは接続され、エクスプローラーにリムーバブルドライブとして表示されていますか?</translation>
    </message>
    <message>
        <source>If it shows no drive letter, give it one in the Disk Management.</source>
        <translation>ドライブ文字が表示されない場合は、「ディスクの管理」で割り当ててください。</translation>
    </message>
</context>
<context>
    <name>DriveFindings</name>
    <message>
        <source>it has no identity file</source>
        <translation>識別ファイルがありません</translation>
    </message>
    <message>
        <source>its identity could not be read: %1</source>
        <translation>識別情報を読み出せませんでした: %1</translation>
    </message>
    <message>
        <source>taken as the reader</source>
        <translation>リーダーとして使用します</translation>
    </message>
    <message>
        <source>taken, though %1: is it a reader?</source>
        <translation>リーダーとして使用します (ただし、%1)。本当にリーダーですか?</translation>
    </message>
    <message>
        <source>also a reader, but %1: comes first</source>
        <translation>これもリーダーですが、%1: を優先します</translation>
    </message>
    <message>
        <source>would pass as a reader, though %1, but %2: comes first</source>
        <translation>これもリーダーとみなせますが (%1)、%2: を優先します</translation>
    </message>
    <message>
        <source>%1, label &quot;%2&quot;</source>
        <translation>%1、ボリュームラベル「%2」</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1、%2</translation>
    </message>
    <message>
        <source>no label can be read: %1</source>
        <translation>ボリュームラベルを読み取れません: %1</translation>
    </message>
    <message>
        <source>identity: &quot;%1&quot;</source>
        <translation>識別情報「%1」</translation>
    </message>
    <message>
        <source>missing (the first command makes it)</source>
        <translation>ありません (最初のコマンドで作成されます)</translation>
    </message>
    <message>
        <source>drive of unknown type</source>
        <translation>種類不明のドライブ</translation>
    </message>
    <message>
        <source>no drive any more</source>
        <translation>ドライブがなくなりました</translation>
    </message>
    <message>
        <source>removable drive</source>
        <translation>リムーバブルドライブ</translation>
    </message>
    <message>
        <source>fixed disk</source>
        <translation>固定ディスク</translation>
    </message>
    <message>
        <source>network drive</source>
        <translation>ネットワークドライブ</translation>
    </message>
    <message>
        <source>CD or DVD drive</source>
        <translation>CD/DVD ドライブ</translation>
    </message>
    <message>
        <source>RAM disk</source>
        <translation>RAM ディスク</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>種類 %1</translation>
    </message>
    <message>
        <source>not taken: a reader is a removable drive, this is not</source>
        <translation>使用しません: リムーバブルドライブではないため、リーダーではありません</translation>
    </message>
    <message>
        <source>not taken: its K-DRIVER.DMP ends before the identity</source>
        <translation>使用しません: K-DRIVER.DMP が識別情報の手前で終わっています</translation>
    </message>
    <message>
        <source>opens</source>
        <translation>開けます</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>ありません</translation>
    </message>
    <message>
        <source>fails: %1</source>
        <translation>エラー: %1</translation>
    </message>
</context>
<context>
    <name>FamicomThread</name>
    <message>
        <source>Read file :</source>
        <translation>読み込むファイル: </translation>
    </message>
    <message>
        <source>Read </source>
        <translation>読み込みサイズ: </translation>
    </message>
    <message>
        <source> Bytes</source>
        <translation> バイト</translation>
    </message>
    <message>
        <source>script error: %1</source>
        <translation>スクリプトエラー: %1</translation>
    </message>
    <message>
        <source>script error: %1 (%2)</source>
        <translation>スクリプトエラー: %1 (%2)</translation>
    </message>
    <message>
        <source>Can not found device.</source>
        <translation>リーダーが見つかりませんでした。</translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation>リーダーを初期化できませんでした。</translation>
    </message>
    <message>
        <source>Not enough memory.</source>
        <translation>メモリが不足しています。</translation>
    </message>
    <message>
        <source>Open File error.</source>
        <translation>ファイルを開けませんでした。</translation>
    </message>
    <message>
        <source>Read File error.</source>
        <translation>ファイルを読み込めませんでした。</translation>
    </message>
    <message>
        <source>Save file error.</source>
        <translation>ファイルを保存できませんでした。</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateTab</name>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>How far the update has come</source>
        <translation>更新の進み具合</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>ファームウェアを更新</translation>
    </message>
    <message>
        <source>First turn off anti-virus software.</source>
        <translation>先にウイルス対策ソフトを無効にしてください。</translation>
    </message>
    <message>
        <source>Next press &quot;Update Firmware&quot; to update firmware.</source>
        <translation>次に「ファームウェアを更新」を押すと、ファームウェアが更新されます。</translation>
    </message>
    <message>
        <source><byte value="xd"/>
</source>
        <translation><byte value="xd"/>
</translation>
    </message>
    <message>
        <source>Starting update firmware , pelase wait...</source>
        <translation>ファームウェアの更新を開始します。お待ちください...</translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation>&gt;正常に完了しました。</translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation>&gt;操作に失敗しました。</translation>
    </message>
    <message>
        <source>Nothing was sent to the reader: this program transfers no firmware.</source>
        <translation>リーダーには何も送信していません。このプログラムにファームウェアを転送する機能はありません。</translation>
    </message>
</context>
<context>
    <name>GuardedJob</name>
    <message>
        <source>Reading</source>
        <translation>読み出し中</translation>
    </message>
    <message>
        <source>Reading again</source>
        <translation>再読み出し中</translation>
    </message>
    <message>
        <source>Keeping a backup</source>
        <translation>バックアップ中</translation>
    </message>
    <message>
        <source>Writing</source>
        <translation>書き込み中</translation>
    </message>
    <message>
        <source>Comparing</source>
        <translation>比較中</translation>
    </message>
    <message>
        <source>Erasing; Cancel ends the wait</source>
        <translation>消去中 (「キャンセル」で待機を終了)</translation>
    </message>
    <message>
        <source>The reader does not answer. Unplug it, or close the window.</source>
        <translation>リーダーが応答しません。取り外すか、ウィンドウを閉じてください。</translation>
    </message>
    <message>
        <source>The reader has not answered for %1 seconds.</source>
        <translation>リーダーが %1 秒間応答していません。</translation>
    </message>
    <message>
        <source>Unplug it to end the job, or close the window twice to leave the job behind; it only reads.</source>
        <translation>リーダーを取り外すと、処理は終了します。ウィンドウを 2 回閉じて、処理を残したまま終了することもできます。読み出しだけの処理です。</translation>
    </message>
    <message>
        <source>The cartridge is being written. If no answer ever comes, unplug the reader: that ends the job, and the cartridge is then partly written.</source>
        <translation>カートリッジに書き込み中です。いつまでも応答がない場合は、リーダーを取り外してください。処理は終了しますが、カートリッジは一部だけ書き込まれた状態になります。</translation>
    </message>
</context>
<context>
    <name>Judgement</name>
    <message>
        <source>%1 of %2 bytes were written</source>
        <translation>書き込めたのは %2 バイト中 %1 バイトです</translation>
    </message>
    <message>
        <source>%1 of %2 bytes arrived</source>
        <translation>届いたのは %2 バイト中 %1 バイトです</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>The file could not be written.</source>
        <translation>ファイルを保存できませんでした。</translation>
    </message>
    <message>
        <source>%1 bytes, read back and equal</source>
        <translation>%1 バイト、読み戻して一致を確認</translation>
    </message>
    <message>
        <source>%1 bytes; nothing was read back and compared</source>
        <translation>%1 バイト、読み戻しての比較は未実施</translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file, read back and equal</source>
        <translation>ファイル %2 バイトのうち先頭の %1 バイトだけを書き込み、読み戻して一致を確認</translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file; nothing was read back and compared</source>
        <translation>ファイル %2 バイトのうち先頭の %1 バイトだけを書き込み、読み戻しての比較は未実施</translation>
    </message>
    <message>
        <source>verified: %1</source>
        <translation>検証済み: %1</translation>
    </message>
    <message>
        <source>consistent: %1</source>
        <translation>矛盾なし: %1</translation>
    </message>
    <message>
        <source>unverified: %1</source>
        <translation>未検証: %1</translation>
    </message>
    <message>
        <source>unstable: %1</source>
        <translation>不安定: %1</translation>
    </message>
    <message>
        <source>suspicious: %1</source>
        <translation>疑わしい: %1</translation>
    </message>
    <message>
        <source>written: %1</source>
        <translation>書き込み済み: %1</translation>
    </message>
    <message>
        <source>incomplete: %1</source>
        <translation>不完全: %1</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>失敗: %1</translation>
    </message>
    <message>
        <source>refused: %1</source>
        <translation>実行拒否: %1</translation>
    </message>
    <message>
        <source>stopped: %1</source>
        <translation>中止: %1</translation>
    </message>
    <message>
        <source>The cartridge is of another system than the settings say.</source>
        <translation>カートリッジの機種が設定と異なります。</translation>
    </message>
    <message>
        <source>The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can be read.</source>
        <translation>カートリッジのバスで読み出せるのは 32 MiB (256 Mb) までです。GBA の ROM をそれ以上は読み出せません。</translation>
    </message>
    <message>
        <source>No flash chip answers and every byte is FF: so reads an empty slot, and nobody would notice that nothing is written.</source>
        <translation>フラッシュチップが応答せず、すべてのバイトが FF です。スロットが空でも同じ結果になり、何も書き込まれていなくても気付けません。</translation>
    </message>
    <message>
        <source>&quot;Read again and compare&quot; in the menu at the top right shows whether two reads are equal.</source>
        <translation>右上のメニューの「もう一度読み出して比較」で、2 回の読み出し結果が一致するか確認できます。</translation>
    </message>
    <message>
        <source>Do not use this file. Clean the contacts, push the cartridge in again and read it once more.</source>
        <translation>このファイルは使わないでください。端子を清掃し、カートリッジを差し直して、もう一度読み出してください。</translation>
    </message>
    <message>
        <source>Do not trust this file. See that the settings are right (Info selects them), clean the contacts, push the cartridge in again and read it once more.</source>
        <translation>このファイルを信用しないでください。設定が正しいことを確認し (「カートリッジ情報」で自動的に選択されます)、端子を清掃し、カートリッジを差し直して、もう一度読み出してください。</translation>
    </message>
    <message>
        <source>Leave the reader plugged in, wait until the other program has ended, and try again.</source>
        <translation>リーダーは接続したまま、ほかのプログラムが終わるのを待って、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Take that drive out. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation>そのドライブを取り外してください。詳しくは、右上のメニューの「リーダーが見つからない理由」で確認できます。</translation>
    </message>
    <message>
        <source>Plug the reader in again. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation>リーダーを接続し直してください。詳しくは、右上のメニューの「リーダーが見つからない理由」で確認できます。</translation>
    </message>
    <message>
        <source>Check the plug of the reader and the contacts of the cartridge, and try again.</source>
        <translation>リーダーの接続とカートリッジの端子を確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>What the cartridge held before is in %1</source>
        <translation>書き込み前のカートリッジの内容の保存先: %1</translation>
    </message>
    <message>
        <source>The chip does not say how large it is; this is what the mapper shows of it.</source>
        <translation>チップの容量を取得できないため、これはマッパーを通して見える範囲だけの内容です。</translation>
    </message>
    <message>
        <source>To put it back, write that file with FLASH.</source>
        <translation>復元するには、そのファイルを「ROM 書き込み」で書き込んでください。</translation>
    </message>
    <message>
        <source>To put it back, write that file with Write RAM.</source>
        <translation>復元するには、そのファイルを「セーブ書き込み」で書き込んでください。</translation>
    </message>
    <message>
        <source>Press Info to select what the cartridge says of itself.</source>
        <translation>「カートリッジ情報」を押すと、カートリッジが示す設定が選択されます。</translation>
    </message>
    <message>
        <source>Choose another name or folder, or make room.</source>
        <translation>別の名前かフォルダーを選ぶか、空き容量を確保してください。</translation>
    </message>
    <message>
        <source>Push the cartridge in again, or tick &quot;Verify the data after writing&quot;.</source>
        <translation>カートリッジを差し直すか、「書き込み後にベリファイする」にチェックを入れてください。</translation>
    </message>
    <message>
        <source>Choose the mapper of the board, whatever the header says.</source>
        <translation>ヘッダーの内容にかかわらず、基板に載っているマッパーを選択してください。</translation>
    </message>
    <message>
        <source>See that the settings are right and that the contacts are clean.</source>
        <translation>設定が正しいこと、端子が汚れていないことを確認してください。</translation>
    </message>
    <message>
        <source>Choose 128 K.</source>
        <translation>「128 K」を選択してください。</translation>
    </message>
    <message>
        <source>Make room in the backup folder, or see that you may write there.</source>
        <translation>バックアップフォルダーの空き容量を確保するか、書き込み権限があることを確認してください。</translation>
    </message>
    <message>
        <source>%1 bytes, SHA-1 %2</source>
        <translation>%1 バイト、SHA-1 %2</translation>
    </message>
    <message>
        <source>The cartridge that Info has seen has %1 bytes of save memory, and only %2 of them were moved. Choose the larger size.</source>
        <translation>「カートリッジ情報」で確認したカートリッジのセーブ用メモリは %1 バイトですが、転送したのは %2 バイトだけです。大きいほうのサイズを選択してください。</translation>
    </message>
    <message>
        <source>The file that was there before is in %1</source>
        <translation>以前のファイルの保存先: %1</translation>
    </message>
    <message>
        <source>Left by a program that was ended: %1
&quot;gbdriver-cli tidy&quot; removes such files.</source>
        <translation>途中で終了したプログラムが残したファイル: %1
このようなファイルは「gbdriver-cli tidy」で削除できます。</translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right.</source>
        <translation>問題ないと分かっている場合は、右上のメニューで「書き込み前の安全確認」をオフにできます。</translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right; then no backup is made.</source>
        <translation>問題ないと分かっている場合は、右上のメニューで「書き込み前の安全確認」をオフにできます。その場合、バックアップは作成されません。</translation>
    </message>
    <message>
        <source>What was read of the cartridge is in %1</source>
        <translation>カートリッジから読み出した内容の保存先: %1</translation>
    </message>
    <message>
        <source>Not looked up: %1</source>
        <translation>照合に使えません: %1</translation>
    </message>
</context>
<context>
    <name>MainTab</name>
    <message>
        <source>Read ROM to...</source>
        <translation>ROM の保存先...</translation>
    </message>
    <message>
        <source>GB/GBC Rom (*.gb *.gbc)</source>
        <translation>GB/GBC ROM (*.gb *.gbc)</translation>
    </message>
    <message>
        <source>GBA Rom (*.gba)</source>
        <translation>GBA ROM (*.gba)</translation>
    </message>
    <message>
        <source>Reading data from ROM to file:</source>
        <translation>ROM を次のファイルに吸い出しています:</translation>
    </message>
    <message>
        <source>Read save to...</source>
        <translation>セーブデータの保存先...</translation>
    </message>
    <message>
        <source>GB/GBC save (*.sav)</source>
        <translation>GB/GBC セーブファイル (*.sav)</translation>
    </message>
    <message>
        <source>GBA save (*.sav)</source>
        <translation>GBA セーブファイル (*.sav)</translation>
    </message>
    <message>
        <source>Reading data from save to file:</source>
        <translation>セーブデータを次のファイルに吸い出しています:</translation>
    </message>
    <message>
        <source>Get ROM File.</source>
        <translation>ROM ファイルを選択</translation>
    </message>
    <message>
        <source>GB/GBC ROM (*.gb *.gbc)</source>
        <translation>GB/GBC ROM (*.gb *.gbc)</translation>
    </message>
    <message>
        <source>GBA ROM (*.gba)</source>
        <translation>GBA ROM (*.gba)</translation>
    </message>
    <message>
        <source>Writing rom to cartridge from file:</source>
        <translation>次のファイルの ROM をカートリッジに書き込んでいます:</translation>
    </message>
    <message>
        <source>Get Save File.</source>
        <translation>セーブファイルを選択</translation>
    </message>
    <message>
        <source>Writing save to cartridge from file:</source>
        <translation>次のファイルのセーブデータをカートリッジに書き込んでいます:</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>カートリッジ情報</translation>
    </message>
    <message>
        <source>Dump</source>
        <translation>ROM 吸い出し</translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation>ROM 書き込み</translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation>セーブ吸い出し</translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation>セーブ書き込み</translation>
    </message>
    <message>
        <source>Show cartridge information!</source>
        <translation>カートリッジの情報を表示します。</translation>
    </message>
    <message>
        <source>Dump ROM from cartridge!</source>
        <translation>カートリッジから ROM を吸い出します。</translation>
    </message>
    <message>
        <source>Flash ROM to a writeable cartridge!</source>
        <translation>書き換え可能なカートリッジに ROM を書き込みます。</translation>
    </message>
    <message>
        <source>Read SRAM from cartridge!</source>
        <translation>カートリッジからセーブデータを吸い出します。</translation>
    </message>
    <message>
        <source>Write SRAM to cartridge!</source>
        <translation>カートリッジにセーブデータを書き込みます。</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>進行状況</translation>
    </message>
    <message>
        <source>How far the job that runs has come</source>
        <translation>実行中の処理の進み具合</translation>
    </message>
    <message>
        <source>Velora Driver Series for GB/GBC/GBA 3.0 started.</source>
        <translation>GB/GBC/GBA 用 Velora Driver Series 3.0 を起動しました。</translation>
    </message>
    <message>
        <source>Support all functions, need &lt;span style=&quot;color: #ffcc00;&quot;&gt;QDX_PCB02_FW303&lt;/span&gt; firmware.</source>
        <translation>すべての機能を使うには、ファームウェア &lt;span style=&quot;color: #ffcc00;&quot;&gt;QDX_PCB02_FW303&lt;/span&gt; が必要です。</translation>
    </message>
    <message>
        <source>To dump GB/GBC cartridge,please switch power to 5V.</source>
        <translation>GB/GBC カートリッジを吸い出すときは、電圧を 5V に切り替えてください。</translation>
    </message>
    <message>
        <source>To dump GBA cartridge,please switch power to 3.3V.</source>
        <translation>GBA カートリッジを吸い出すときは、電圧を 3.3V に切り替えてください。</translation>
    </message>
    <message>
        <source>Part of homebrew GB/GBC flash cart need 3.3V power.</source>
        <translation>自作の GB/GBC フラッシュカートリッジには、3.3V が必要なものがあります。</translation>
    </message>
    <message>
        <source><byte value="xd"/>
</source>
        <translation><byte value="xd"/>
</translation>
    </message>
    <message>
        <source>gba.nut</source>
        <translation>gba.nut</translation>
    </message>
    <message>
        <source>/mapper/</source>
        <translation>/mapper/</translation>
    </message>
    <message>
        <source>Flash chip is 8bit width</source>
        <translation>フラッシュチップは 8 ビット幅です。</translation>
    </message>
    <message>
        <source>Flash chip is 16bit width</source>
        <translation>フラッシュチップは 16 ビット幅です。</translation>
    </message>
    <message>
        <source>Flash chip size is :</source>
        <translation>フラッシュチップの容量: </translation>
    </message>
    <message>
        <source>KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation>&gt;操作に失敗しました。</translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation>&gt;正常に完了しました。</translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation>リーダーを初期化できませんでした。</translation>
    </message>
    <message>
        <source>Not exists script file :</source>
        <translation>スクリプトファイルがありません:</translation>
    </message>
    <message>
        <source>Can not found dump device.</source>
        <translation>リーダーが見つかりませんでした。</translation>
    </message>
    <message>
        <source>--Device information--</source>
        <translation>--リーダー情報--</translation>
    </message>
    <message>
        <source>Driver label: </source>
        <translation>ボリュームラベル: </translation>
    </message>
    <message>
        <source>Device firmware: </source>
        <translation>ファームウェア: </translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Read ROM error.</source>
        <translation>ROM を読み出せませんでした。</translation>
    </message>
    <message>
        <source>--GB/GBC Cartridge information--</source>
        <translation>--GB/GBC カートリッジ情報--</translation>
    </message>
    <message>
        <source>Title: </source>
        <translation>タイトル: </translation>
    </message>
    <message>
        <source>Cart type: </source>
        <translation>カートリッジタイプ: </translation>
    </message>
    <message>
        <source>ROM Size: </source>
        <translation>ROM サイズ: </translation>
    </message>
    <message>
        <source>RAM Size: </source>
        <translation>セーブサイズ: </translation>
    </message>
    <message>
        <source>Can not auto detect cartridge information.</source>
        <translation>カートリッジの情報を自動判別できませんでした。</translation>
    </message>
    <message>
        <source>Maybe no insert cart or it&apos;s a black cart.</source>
        <translation>カートリッジが差し込まれていないか、認識できないカートリッジの可能性があります。</translation>
    </message>
    <message>
        <source>Also try:</source>
        <translation>次のこともお試しください:</translation>
    </message>
    <message>
        <source> 1.Turn off anti-virus software.</source>
        <translation> 1.ウイルス対策ソフトを無効にしてください。</translation>
    </message>
    <message>
        <source> 2.Damaged or Dirty.</source>
        <translation> 2.カートリッジの故障や端子の汚れがないか確認してください。</translation>
    </message>
    <message>
        <source> 3.Switch correct volte on dump board.</source>
        <translation> 3.リーダーの電圧を正しく切り替えてください。</translation>
    </message>
    <message>
        <source> 4.Try again.</source>
        <translation> 4.もう一度お試しください。</translation>
    </message>
    <message>
        <source>Detect GBA cartridge, but can not detect detail.</source>
        <translation>GBA カートリッジを検出しましたが、詳細を判別できませんでした。</translation>
    </message>
    <message>
        <source>--GBA Cartridge information--</source>
        <translation>--GBA カートリッジ情報--</translation>
    </message>
    <message>
        <source>Year: </source>
        <translation>発売年: </translation>
    </message>
    <message>
        <source>Publisher: </source>
        <translation>発売元: </translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>the reader did not take the command</source>
        <translation>リーダーがコマンドを受け付けませんでした</translation>
    </message>
    <message>
        <source>only %1 of %2 bytes arrived</source>
        <translation>%2 バイト中 %1 バイトしか届きませんでした</translation>
    </message>
    <message>
        <source>the reader did not answer</source>
        <translation>リーダーが応答しませんでした</translation>
    </message>
    <message>
        <source>(what the script prints is not shown any more)</source>
        <translation>(これ以降のスクリプトの出力は表示しません)</translation>
    </message>
    <message>
        <source>the script suspended itself</source>
        <translation>スクリプトが自ら休止しました</translation>
    </message>
    <message>
        <source>%1 suspended itself</source>
        <translation>%1 が自ら休止しました</translation>
    </message>
    <message>
        <source>the script has no function %1</source>
        <translation>スクリプトに関数 %1 がありません</translation>
    </message>
    <message>
        <source>Start dump rom...</source>
        <translation>ROM の吸い出しを開始します...</translation>
    </message>
    <message>
        <source>Dump rom finish.</source>
        <translation>ROM の吸い出しが完了しました。</translation>
    </message>
    <message>
        <source>Start dump save...</source>
        <translation>セーブデータの吸い出しを開始します...</translation>
    </message>
    <message>
        <source>Dump save finish.</source>
        <translation>セーブデータの吸い出しが完了しました。</translation>
    </message>
    <message>
        <source>Start write save...</source>
        <translation>セーブデータの書き込みを開始します...</translation>
    </message>
    <message>
        <source>Write save finish.</source>
        <translation>セーブデータの書き込みが完了しました。</translation>
    </message>
    <message>
        <source>Erase flash chip finish.</source>
        <translation>フラッシュチップの消去が完了しました。</translation>
    </message>
    <message>
        <source>the reader did not answer while the chip was being erased</source>
        <translation>チップの消去中にリーダーが応答しませんでした</translation>
    </message>
    <message>
        <source>the chip was not erased after %1 seconds</source>
        <translation>%1 秒待ってもチップの消去が終わりませんでした</translation>
    </message>
    <message>
        <source>Start erase flash chip...</source>
        <translation>フラッシュチップの消去を開始します...</translation>
    </message>
    <message>
        <source>the reader did not take the command that erases the save</source>
        <translation>リーダーがセーブデータの消去コマンドを受け付けませんでした</translation>
    </message>
    <message>
        <source>Start flash ROM...</source>
        <translation>ROM の書き込みを開始します...</translation>
    </message>
    <message>
        <source>Flash ROM finish.</source>
        <translation>ROM の書き込みが完了しました。</translation>
    </message>
    <message>
        <source>dump core script error
</source>
        <translation>吸い出し用スクリプトでエラーが発生しました。
</translation>
    </message>
    <message>
        <source>Unknow operate!</source>
        <translation>不明な操作です。</translation>
    </message>
    <message>
        <source>the script needs more than %1 MiB of memory</source>
        <translation>スクリプトが %1 MiB を超えるメモリを必要としています</translation>
    </message>
    <message>
        <source>the script is nested too deeply</source>
        <translation>スクリプトの入れ子が深すぎます</translation>
    </message>
    <message>
        <source>the script did nothing with the cartridge for %1 seconds</source>
        <translation>スクリプトが %1 秒間、カートリッジに何もしませんでした</translation>
    </message>
    <message>
        <source>the job was left</source>
        <translation>処理が打ち切られました</translation>
    </message>
</context>
<context>
    <name>ReaderCorner</name>
    <message>
        <source>Demo reader</source>
        <translation>デモ用リーダー</translation>
    </message>
    <message>
        <source>No reader</source>
        <translation>リーダーなし</translation>
    </message>
    <message>
        <source>nameless reader</source>
        <translation>名前のないリーダー</translation>
    </message>
    <message>
        <source>This reader and its cartridge exist only in this program. Opens the menu of all actions.</source>
        <translation>このリーダーとカートリッジは、プログラムの中だけのものです。すべての操作のメニューを開きます。</translation>
    </message>
    <message>
        <source>No reader has been found. Opens the menu of all actions.</source>
        <translation>リーダーが見つかっていません。すべての操作のメニューを開きます。</translation>
    </message>
    <message>
        <source>The reader that jobs use, by its drive. Opens the menu of all actions.</source>
        <translation>処理に使うリーダーを、ドライブとともに示しています。すべての操作のメニューを開きます。</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Asks the job that runs to stop; the log says how it leaves the cartridge.</source>
        <translation>実行中の処理に中止を求めます。カートリッジがどのような状態になったかはログに表示されます。</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>カートリッジ情報</translation>
    </message>
    <message>
        <source>Looks for the reader, says what it and its cartridge are, and chooses the settings that fit.</source>
        <translation>リーダーを探し、リーダーとカートリッジの情報を表示して、合う設定を選択します。</translation>
    </message>
    <message>
        <source>Dump</source>
        <translation>ROM 吸い出し</translation>
    </message>
    <message>
        <source>Copies the ROM of the cartridge into a file.</source>
        <translation>カートリッジの ROM をファイルに吸い出します。</translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation>ROM 書き込み</translation>
    </message>
    <message>
        <source>Erases a rewritable cartridge and writes a ROM file into it.</source>
        <translation>書き換え可能なカートリッジを消去して、ROM ファイルを書き込みます。</translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation>セーブ吸い出し</translation>
    </message>
    <message>
        <source>Copies the save memory of the cartridge into a file.</source>
        <translation>カートリッジのセーブデータをファイルに吸い出します。</translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation>セーブ書き込み</translation>
    </message>
    <message>
        <source>Writes a save file into the cartridge, over the save that is there.</source>
        <translation>セーブファイルをカートリッジに書き込みます。カートリッジにあるセーブデータは上書きされます。</translation>
    </message>
    <message>
        <source>Back up this cartridge…</source>
        <translation>カートリッジをバックアップ…</translation>
    </message>
    <message>
        <source>Copies ROM and save memory into a folder, with a report about both.</source>
        <translation>ROM とセーブデータを、両方についてのレポートとともにフォルダーに保存します。</translation>
    </message>
    <message>
        <source>Read again and compare</source>
        <translation>もう一度読み出して比較</translation>
    </message>
    <message>
        <source>Reads what was dumped last once more and says whether both reads are equal.</source>
        <translation>最後に吸い出したデータをもう一度読み出し、2 回の読み出し結果が一致するか確認します。</translation>
    </message>
    <message>
        <source>Check a ROM file…</source>
        <translation>ROM ファイルを確認…</translation>
    </message>
    <message>
        <source>Says what a ROM file is worth. No reader is needed for it.</source>
        <translation>ROM ファイルがどれだけ信頼できるかを判定します。リーダーは必要ありません。</translation>
    </message>
    <message>
        <source>Why is no reader found?</source>
        <translation>リーダーが見つからない理由</translation>
    </message>
    <message>
        <source>Looks at every drive and says in the log why it is or is not taken as the reader.</source>
        <translation>すべてのドライブを調べ、リーダーとして使用する理由、または使用しない理由をログに表示します。</translation>
    </message>
    <message>
        <source>Guard writes</source>
        <translation>書き込み前の安全確認</translation>
    </message>
    <message>
        <source>Keeps what is in the cartridge in the backup folder before anything is written over it.</source>
        <translation>上書きする前に、カートリッジの内容をバックアップフォルダーに保存します。</translation>
    </message>
    <message>
        <source>Read twice what no table knows</source>
        <translation>既知のダンプ以外は 2 回読み出す</translation>
    </message>
    <message>
        <source>Reads a ROM a second time if it is not among the known dumps, and compares. Takes twice as long.</source>
        <translation>既知のダンプにない ROM は、もう一度読み出して比較します。時間は 2 倍かかります。</translation>
    </message>
    <message>
        <source>Open the backup folder</source>
        <translation>バックアップフォルダーを開く</translation>
    </message>
    <message>
        <source>Shows the folder in which old saves, ROMs and files are kept.</source>
        <translation>以前のセーブデータ、ROM、ファイルを保存しているフォルダーを表示します。</translation>
    </message>
    <message>
        <source>Copy the log</source>
        <translation>ログをコピー</translation>
    </message>
    <message>
        <source>Puts the text of the whole log on the clipboard.</source>
        <translation>ログ全体のテキストをクリップボードにコピーします。</translation>
    </message>
    <message>
        <source>Use the demo reader</source>
        <translation>デモ用リーダーを使う</translation>
    </message>
    <message>
        <source>Tries everything on a reader and a cartridge that exist only in this program. Not beside a real reader.</source>
        <translation>プログラムの中だけのリーダーとカートリッジで、すべてを試せます。実物のリーダーとは併用できません。</translation>
    </message>
    <message>
        <source>Reader: %1</source>
        <translation>リーダー: %1</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>SYS TYPE:</source>
        <translation>機種:</translation>
    </message>
    <message>
        <source>Verify the data after writing</source>
        <translation>書き込み後にベリファイする</translation>
    </message>
    <message>
        <source>What kind of cartridge is in the slot</source>
        <translation>スロットにあるカートリッジの機種</translation>
    </message>
    <message>
        <source>GB/GBC: the mapper; GBA: the size of the ROM</source>
        <translation>GB/GBC: マッパー、GBA: ROM サイズ</translation>
    </message>
    <message>
        <source>GB/GBC: the size of the ROM; GBA: the kind of save</source>
        <translation>GB/GBC: ROM サイズ、GBA: セーブタイプ</translation>
    </message>
    <message>
        <source>The size of the save memory</source>
        <translation>セーブ用メモリのサイズ</translation>
    </message>
    <message>
        <source>Reads back what was written and compares it</source>
        <translation>書き込んだデータを読み戻して比較します。</translation>
    </message>
    <message>
        <source>MBC TYPE:</source>
        <translation>MBC タイプ:</translation>
    </message>
    <message>
        <source>ROM SIZE:</source>
        <translation>ROM サイズ:</translation>
    </message>
    <message>
        <source>RAM SIZE:</source>
        <translation>セーブサイズ:</translation>
    </message>
    <message>
        <source>RAM TYPE:</source>
        <translation>セーブタイプ:</translation>
    </message>
</context>
<context>
    <name>TabAbout</name>
    <message>
        <source>* Squirrel 3.1 stable, Copyright (c) 2003-2016
  Alberto Demichelis

* Qt 5.7, Copyright (c) 2016-2020
  The Qt Company Ltd.</source>
        <translation>* Squirrel 3.1 stable, Copyright (c) 2003-2016
  Alberto Demichelis

* Qt 5.7, Copyright (c) 2016-2020
  The Qt Company Ltd.</translation>
    </message>
    <message>
        <source>This program and device, called set, enables to:
- make game backups from owned cartridges and play them on PC,
- transfer game saves between cartridge and PC,
- test written by yourself games directly on console 
  (rewritable cartridge required).
</source>
        <translation>このソフトとリーダーを使うと、次のことができます:
- 手持ちのカートリッジからゲームのバックアップを作り、PC で遊ぶ
- カートリッジと PC の間でセーブデータを移す
- 自作のゲームを実機で直接テストする
  (書き換え可能なカートリッジが必要です)
</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このソフトについて</translation>
    </message>
    <message>
        <source>Velora Cartridge Driver/Dumper</source>
        <translation>Velora Cartridge Driver/Dumper</translation>
    </message>
    <message>
        <source>GB/GBC/GBA Cartridge Dumper</source>
        <translation>GB/GBC/GBA カートリッジ吸い出しツール</translation>
    </message>
    <message>
        <source>Web site: </source>
        <translation>ウェブサイト: </translation>
    </message>
    <message>
        <source>Email: </source>
        <translation>メール: </translation>
    </message>
</context>
<context>
    <name>TabDialog</name>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>The file that was there before is in %1</source>
        <translation>以前のファイルの保存先: %1</translation>
    </message>
    <message>
        <source>GB Driver 3.0 build - </source>
        <translation>GB Driver 3.0 ビルド - </translation>
    </message>
    <message>
        <source>GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>ファームウェア更新</translation>
    </message>
    <message>
        <source>About</source>
        <translation>このソフトについて</translation>
    </message>
    <message>
        <source>The cartridge is being written. The window stays until that has ended.</source>
        <translation>カートリッジに書き込み中です。終わるまでウィンドウは閉じません。</translation>
    </message>
    <message>
        <source>A job is running and has been asked to stop. The window closes when it has ended.</source>
        <translation>処理を実行中のため、中止を求めました。処理が終わると、ウィンドウは閉じます。</translation>
    </message>
    <message>
        <source>The job has not ended yet. Close the window again to leave it behind; it only reads.</source>
        <translation>処理がまだ終わっていません。もう一度ウィンドウを閉じると、処理を残したまま終了します。読み出しだけの処理です。</translation>
    </message>
    <message>
        <source>The window stays open, for you to read this. Close it again.</source>
        <translation>この内容を読めるように、ウィンドウは開いたままにしています。読み終えたら、もう一度ウィンドウを閉じてください。</translation>
    </message>
</context>
<context>
    <name>UpdateThread</name>
    <message>
        <source>Update firmware successful.</source>
        <translation>ファームウェアを更新しました。</translation>
    </message>
</context>
<context>
    <name>Words</name>
    <message>
        <source>The save of an MBC6 cannot be read or written: no script knows this mapper.</source>
        <translation>MBC6 のセーブデータは読み書きできません。このマッパーに対応するスクリプトがありません。</translation>
    </message>
    <message>
        <source>The save of an MBC7 cannot be read or written: it lies in a serial EEPROM that moves one bit at a time, and the reader has no command for that.</source>
        <translation>MBC7 のセーブデータは読み書きできません。1 ビットずつ転送するシリアル EEPROM にあり、リーダーにはそのためのコマンドがありません。</translation>
    </message>
    <message>
        <source>The save of a TAMA5 cannot be read or written: it lies behind registers, and the bytes of another save would destroy it.</source>
        <translation>TAMA5 のセーブデータは読み書きできません。レジスターを介してアクセスする必要があり、別のセーブデータのバイトを書き込むと壊れます。</translation>
    </message>
    <message>
        <source>The header names another mapper than was chosen; what is meant for one mapper can destroy what another keeps.</source>
        <translation>ヘッダーのマッパーが、選択したマッパーと異なります。あるマッパー向けの操作は、別のマッパーが保持しているデータを壊すことがあります。</translation>
    </message>
    <message>
        <source>The game table names another kind of save memory than was chosen; the wrong commands can destroy what a read with them does not show.</source>
        <translation>ゲームデータベースのセーブタイプが、選択したセーブタイプと異なります。誤ったコマンドを使うと、そのコマンドの読み出しでは見えないデータが壊れることがあります。</translation>
    </message>
    <message>
        <source>The cartridge names another size of its save memory than was chosen; the write would leave out a part of it or go over another.</source>
        <translation>カートリッジが示すセーブサイズが、選択したセーブサイズと異なります。書き込むと、一部が書き込まれずに残るか、別の部分が上書きされます。</translation>
    </message>
    <message>
        <source>Warning: all bytes of %1 are equal. So looks an empty save, but also one that was read with bad contacts or the wrong settings.</source>
        <translation>警告: %1 のすべてのバイトが同じ値です。空のセーブデータのほか、端子の接触不良や誤った設定のまま読み出したセーブデータもこうなります。</translation>
    </message>
    <message>
        <source>The reader has no command that writes a GBA ROM.</source>
        <translation>リーダーに、GBA の ROM を書き込むコマンドがありません。</translation>
    </message>
    <message>
        <source>Cartridges with this mapper have no flash chip that can be written.</source>
        <translation>このマッパーのカートリッジには、書き込めるフラッシュチップがありません。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>ファイルが空です。</translation>
    </message>
    <message>
        <source>The file has %1 bytes; with this mapper a flash chip takes %2.</source>
        <translation>ファイルは %1 バイトですが、このマッパーのフラッシュチップに入るのは %2 バイトまでです。</translation>
    </message>
    <message>
        <source>The last bank of the file has %1 bytes; %2 are the fewest that the reader can program. Pad the file.</source>
        <translation>ファイルの最後のバンクが %1 バイトしかありません。リーダーが書き込める最小のサイズは %2 バイトです。足りない分をファイルの末尾に補ってください。</translation>
    </message>
    <message>
        <source>The file has %1 bytes, the flash chip %2.</source>
        <translation>ファイルは %1 バイトですが、フラッシュチップは %2 バイトです。</translation>
    </message>
    <message>
        <source>The chip is erased as a whole, and a backup of %1 bytes may be only a part of it: up to %2 can be in it.</source>
        <translation>チップは全体が消去されますが、%1 バイトのバックアップはその一部にすぎない可能性があります。チップには最大 %2 バイトが入っている可能性があります。</translation>
    </message>
    <message>
        <source>The chip has %2 bytes, and what is read of it repeats its first %1: so it reads behind another mapper than the one that was chosen, and a backup would be a part of it.</source>
        <translation>チップは %2 バイトですが、読み出すと先頭の %1 バイトの繰り返しになります。実際のマッパーは選択したものと異なり、バックアップは一部だけになります。</translation>
    </message>
    <message>
        <source>their lengths: %1 and %2 bytes</source>
        <translation>長さが %1 バイトと %2 バイト</translation>
    </message>
    <message>
        <source>it has become shorter</source>
        <translation>ファイルが短くなっています</translation>
    </message>
    <message>
        <source>known dumps</source>
        <translation>既知のダンプ</translation>
    </message>
    <message>
        <source>The cartridge was not touched.</source>
        <translation>カートリッジには何もしていません。</translation>
    </message>
    <message>
        <source>The cartridge was only looked at.</source>
        <translation>カートリッジの情報を確認しただけです。</translation>
    </message>
    <message>
        <source>The cartridge was only read.</source>
        <translation>カートリッジを読み出しただけです。</translation>
    </message>
    <message>
        <source>The cartridge was read, which also writes to its bus.</source>
        <translation>カートリッジを読み出しました (読み出しでもバスへの書き込みは行われます)。</translation>
    </message>
    <message>
        <source>Nothing was read.</source>
        <translation>何も読み出していません。</translation>
    </message>
    <message>
        <source>Nothing was written; the cartridge is as it was.</source>
        <translation>何も書き込んでいません。カートリッジは元のままです。</translation>
    </message>
    <message>
        <source>The write was not begun; the cartridge was read, which also writes to its bus.</source>
        <translation>書き込みは開始していません。カートリッジの読み出しは行いました (読み出しでもバスへの書き込みは行われます)。</translation>
    </message>
    <message>
        <source>The cartridge may be partly written.</source>
        <translation>カートリッジは一部だけ書き込まれた可能性があります。</translation>
    </message>
    <message>
        <source>What the chip held may be lost.</source>
        <translation>チップの元の内容は失われた可能性があります。</translation>
    </message>
    <message>
        <source>The cartridge was written.</source>
        <translation>カートリッジに書き込みました。</translation>
    </message>
    <message>
        <source>there are no bytes</source>
        <translation>データがありません</translation>
    </message>
    <message>
        <source>all bytes are equal: an empty slot or no contact</source>
        <translation>すべてのバイトが同じ値です (スロットが空か接触不良)</translation>
    </message>
    <message>
        <source>there is no boot logo in the header</source>
        <translation>ヘッダーに起動ロゴがありません</translation>
    </message>
    <message>
        <source>the header&apos;s checksum is wrong</source>
        <translation>ヘッダーチェックサムが異常です</translation>
    </message>
    <message>
        <source>the checksum over the whole ROM is wrong</source>
        <translation>ROM 全体のグローバルチェックサムが異常です</translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before</source>
        <translation>バイト位置 %1 以降は、それより前の内容の繰り返しです</translation>
    </message>
    <message>
        <source>from byte %1 no memory answers</source>
        <translation>バイト位置 %1 以降は、応答するメモリがありません</translation>
    </message>
    <message>
        <source>the header speaks of %1 bytes, these are %2</source>
        <translation>ヘッダーでは %1 バイトですが、実際は %2 バイトです</translation>
    </message>
    <message>
        <source>not a known dump</source>
        <translation>既知のダンプではありません</translation>
    </message>
    <message>
        <source>such a ROM has no checksum over all of its bytes</source>
        <translation>この種の ROM には、ROM 全体のチェックサムがありません</translation>
    </message>
    <message>
        <source>nobody saw it read twice</source>
        <translation>2 回読み出して確認した記録がありません</translation>
    </message>
    <message>
        <source>read only once</source>
        <translation>読み出しは 1 回だけです</translation>
    </message>
    <message>
        <source>reads differ in %1</source>
        <translation>読み出し結果が異なります (%1)</translation>
    </message>
    <message>
        <source>logo, header checksum and checksum over the whole ROM are right</source>
        <translation>ロゴ、ヘッダーチェックサム、グローバルチェックサムは正常です</translation>
    </message>
    <message>
        <source>the checksum is a sum and does not see swapped banks</source>
        <translation>チェックサムは単純な合計なので、バンクの入れ替わりは検出できません</translation>
    </message>
    <message>
        <source>%1 equal reads</source>
        <translation>%1 回の読み出し結果が一致しました</translation>
    </message>
    <message>
        <source>all bytes are equal: an empty save, no contact, or the wrong kind of save memory</source>
        <translation>すべてのバイトが同じ値です (空のセーブデータ、接触不良、またはセーブタイプの誤り)</translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before: two copies, or a smaller save memory</source>
        <translation>バイト位置 %1 以降は、それより前の内容の繰り返しです (同じ内容が 2 つあるか、セーブ用メモリが実際にはもっと小さい)</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1 / %2</translation>
    </message>
    <message>
        <source>%1.</source>
        <translation>%1。</translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation>%1%2</translation>
    </message>
    <message>
        <source>No reader was found.</source>
        <translation>リーダーが見つかりませんでした。</translation>
    </message>
    <message>
        <source>The reader does not answer.</source>
        <translation>リーダーが応答しません。</translation>
    </message>
    <message>
        <source>Another program uses the reader.</source>
        <translation>ほかのプログラムがリーダーを使用中です。</translation>
    </message>
    <message>
        <source>The drive that was taken for the reader is none.</source>
        <translation>リーダーとして使用したドライブは、リーダーではありません。</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>メモリが不足しています。</translation>
    </message>
    <message>
        <source>There is no mapper script &quot;%1&quot;. Install the mapper folder beside the program.</source>
        <translation>マッパースクリプト「%1」がありません。プログラムと同じ場所に mapper フォルダーを置いてください。</translation>
    </message>
    <message>
        <source>The file cannot be opened.</source>
        <translation>ファイルを開けません。</translation>
    </message>
    <message>
        <source>The file is too short.</source>
        <translation>ファイルが短すぎます。</translation>
    </message>
    <message>
        <source>Stopped while the chip was being erased.</source>
        <translation>チップの消去中に中止しました。</translation>
    </message>
    <message>
        <source>The chip was not seen to be erased.</source>
        <translation>チップが消去されたことを確認できませんでした。</translation>
    </message>
    <message>
        <source>The mapper script is wrong; mend it, or install the program anew.</source>
        <translation>マッパースクリプトに誤りがあります。修正するか、プログラムをインストールし直してください。</translation>
    </message>
    <message>
        <source>Stopped, because the mapper script did nothing.</source>
        <translation>マッパースクリプトが何もしなかったため、中止しました。</translation>
    </message>
    <message>
        <source>Stopped before everything was read.</source>
        <translation>すべて読み出す前に中止しました。</translation>
    </message>
    <message>
        <source>The transfer failed.</source>
        <translation>転送に失敗しました。</translation>
    </message>
    <message>
        <source>Only %1 of %2 bytes were transferred.</source>
        <translation>%2 バイト中 %1 バイトしか転送されませんでした。</translation>
    </message>
    <message>
        <source>Cannot write %1: fewer bytes were written than there are</source>
        <translation>%1 を保存できません: 一部のバイトしか書き込まれませんでした</translation>
    </message>
    <message>
        <source>Cannot write %1: the system cannot hold this name in its 8-bit encoding.</source>
        <translation>%1 を保存できません: この名前はシステムの 8 ビット文字コードで表せません。</translation>
    </message>
    <message>
        <source>Cannot write %1: it is a folder.</source>
        <translation>%1 を保存できません: フォルダーです。</translation>
    </message>
    <message>
        <source>Cannot write %1: the folder does not exist.</source>
        <translation>%1 を保存できません: フォルダーが存在しません。</translation>
    </message>
    <message>
        <source>Cannot write %1: it exists already.</source>
        <translation>%1 を保存できません: すでに存在します。</translation>
    </message>
    <message>
        <source>%1 does not hold what was written to it; the disk is not to be trusted.</source>
        <translation>%1 の内容が、書き込んだものと異なります。このディスクは信用できません。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is a folder.</source>
        <translation>%1 を読み込めません: フォルダーです。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is no ordinary file.</source>
        <translation>%1 を読み込めません: 通常のファイルではありません。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is too large for a cartridge.</source>
        <translation>%1 を読み込めません: カートリッジのデータとしては大きすぎます。</translation>
    </message>
    <message>
        <source>Cannot read %1: %2.</source>
        <translation>%1 を読み込めません: %2。</translation>
    </message>
    <message>
        <source>Asked to stop before the write.</source>
        <translation>書き込みの前に、中止が求められました。</translation>
    </message>
    <message>
        <source>Asked to stop before two reads were compared.</source>
        <translation>2 回の読み出し結果を比較する前に、中止が求められました。</translation>
    </message>
    <message>
        <source>Two reads of the cartridge differ (%1), so there can be no backup of it. Clean the contacts, push the cartridge in again.</source>
        <translation>カートリッジの 2 回の読み出し結果が異なるため (%1)、バックアップを作成できません。端子を清掃して、カートリッジを差し直してください。</translation>
    </message>
    <message>
        <source>All bytes of the save are equal. So reads an empty save, but also a wrong type or size of save memory and a bad contact, and then the write would destroy a save of which there is no backup.</source>
        <translation>セーブデータのすべてのバイトが同じ値です。空のセーブデータのほか、セーブタイプやセーブサイズの誤り、接触不良でもこうなります。その場合に書き込むと、バックアップのないままセーブデータが失われます。</translation>
    </message>
    <message>
        <source>The save chip holds 128 KiB, and the write would erase all of it.</source>
        <translation>セーブ用のチップは 128 KiB で、書き込むとその全体が消去されます。</translation>
    </message>
    <message>
        <source>The flash chip says something else when it is asked again. Clean the contacts, push the cartridge in again.</source>
        <translation>フラッシュチップにもう一度問い合わせると、応答が変わりました。端子を清掃して、カートリッジを差し直してください。</translation>
    </message>
    <message>
        <source>Cannot make the folder %1 for the backup.</source>
        <translation>バックアップ用のフォルダー %1 を作成できません。</translation>
    </message>
    <message>
        <source>It was written, but it could not be read back, so nobody knows whether it is right.</source>
        <translation>書き込みましたが、読み戻せなかったため、正しく書き込まれたかどうか分かりません。</translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written.</source>
        <translation>カートリッジの内容が、書き込んだデータと異なります。</translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written: %1 differ (%2).</source>
        <translation>カートリッジの内容が、書き込んだデータと異なります: %1 (%2)。</translation>
    </message>
    <message>
        <source>0x%1: %2 instead of %3</source>
        <translation>0x%1: %2 (正しくは %3)</translation>
    </message>
</context>
</TS>
