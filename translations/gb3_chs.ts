<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Backup</name>
    <message>
        <source>%1; already there</source>
        <translation>%1；文件夹中已有相同文件</translation>
    </message>
    <message>
        <source>none</source>
        <translation>无</translation>
    </message>
    <message>
        <source>not read: its size or kind is not known</source>
        <translation>未读取：容量或类型未知</translation>
    </message>
    <message>
        <source>not read: %1</source>
        <translation>未读取：%1</translation>
    </message>
    <message>
        <source>not read: after a ROM of this size an MMM01 shows its save in pieces until it is taken out</source>
        <translation>未读取：读取此容量的 ROM 后，在拔出卡带之前，只能分段读到 MMM01 的存档</translation>
    </message>
    <message>
        <source>not read: no table knows this game</source>
        <translation>未读取：游戏数据库未收录此游戏</translation>
    </message>
    <message>
        <source>not read: the cartridge was changed meanwhile</source>
        <translation>未读取：期间卡带被更换</translation>
    </message>
    <message>
        <source>not read twice: %1</source>
        <translation>未能读取两次：%1</translation>
    </message>
    <message>
        <source>The first read is in %1.</source>
        <translation>第一次读取的结果保存在 %1。</translation>
    </message>
    <message>
        <source>not written: %1</source>
        <translation>未能保存：%1</translation>
    </message>
    <message>
        <source>ROM, %1</source>
        <translation>ROM，%1</translation>
    </message>
    <message>
        <source>The cartridge has no ROM that can be read.</source>
        <translation>卡带中没有可读取的 ROM。</translation>
    </message>
    <message>
        <source>save, %1</source>
        <translation>存档，%1</translation>
    </message>
    <message>
        <source>The cartridge has no save that can be read.</source>
        <translation>卡带中没有可读取的存档。</translation>
    </message>
    <message>
        <source>No cartridge was recognised. Push it in again, clean its contacts, or choose the settings and use Dump.</source>
        <translation>无法识别卡带。请重新插好卡带、清洁触点，或自行选择设置后使用“导出 ROM”。</translation>
    </message>
    <message>
        <source>The save was not read.</source>
        <translation>未读取存档。</translation>
    </message>
</context>
<context>
    <name>Console</name>
    <message>
        <source>Log</source>
        <translation>日志</translation>
    </message>
    <message>
        <source>What has happened; the newest line is the last</source>
        <translation>显示已进行的操作，最新一行在最下方</translation>
    </message>
</context>
<context>
    <name>CornerActions</name>
    <message>
        <source>A reader was plugged in, so the demo reader is off.</source>
        <translation>已连接读写器，因此演示读写器已关闭。</translation>
    </message>
    <message>
        <source>The demo reader is on: no real cartridge is read or written.</source>
        <translation>演示读写器已启用：不会读写任何真实卡带。</translation>
    </message>
    <message>
        <source>The demo reader is off.</source>
        <translation>演示读写器已关闭。</translation>
    </message>
    <message>
        <source>Checking the ROM file:</source>
        <translation>正在检查 ROM 文件：</translation>
    </message>
    <message>
        <source>Check a ROM file</source>
        <translation>检查 ROM 文件</translation>
    </message>
    <message>
        <source>ROM files (*.gb *.gbc *.gba *.sgb)</source>
        <translation>ROM 文件 (*.gb *.gbc *.gba *.sgb)</translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation>所有文件 (*)</translation>
    </message>
    <message>
        <source>Back up the cartridge into...</source>
        <translation>将卡带备份到...</translation>
    </message>
    <message>
        <source>Backing up the cartridge into the folder:</source>
        <translation>正在将卡带备份到文件夹：</translation>
    </message>
    <message>
        <source>The backup folder is %1</source>
        <translation>备份文件夹是 %1</translation>
    </message>
</context>
<context>
    <name>Differences</name>
    <message>
        <source>%1 and %2 more</source>
        <translation>%1 及另外 %2 个</translation>
    </message>
    <message>
        <source>bank %1 of %2</source>
        <translation>%2 个 bank 中的 %1 号 bank</translation>
    </message>
    <message>
        <source>banks %1 of %2</source>
        <translation>%2 个 bank 中的 bank %1</translation>
    </message>
    <message>
        <source>4 KiB block %1 of %2</source>
        <translation>%2 个 4 KiB 块中的 %1 号块</translation>
    </message>
    <message>
        <source>4 KiB blocks %1 of %2</source>
        <translation>%2 个 4 KiB 块中的块 %1</translation>
    </message>
    <message>
        <source>64 KiB block %1 of %2</source>
        <translation>%2 个 64 KiB 块中的 %1 号块</translation>
    </message>
    <message>
        <source>64 KiB blocks %1 of %2</source>
        <translation>%2 个 64 KiB 块中的块 %1</translation>
    </message>
    <message>
        <source>%1 of %2 bytes, at %3</source>
        <translation>%2 字节中有 %1 字节不同，位于 %3</translation>
    </message>
    <message>
        <source>%1 of %2 bytes, from %3 to %4</source>
        <translation>%2 字节中有 %1 字节不同，位于 %3 至 %4</translation>
    </message>
</context>
<context>
    <name>DriveAdvice</name>
    <message>
        <source>Is the folder that GBDRIVER_DRIVES names there, and the reader mounted on it?</source>
        <translation>请确认 GBDRIVER_DRIVES 指定的文件夹存在，且读写器已挂载到该文件夹。</translation>
    </message>
    <message>
        <source>Unset GBDRIVER_DRIVES to look at every mounted removable drive.</source>
        <translation>要查看所有已挂载的可移动驱动器，请取消设置 GBDRIVER_DRIVES。</translation>
    </message>
    <message>
        <source>Is the reader plugged in and mounted? Only mounted drives are seen: &quot;lsblk&quot;
shows both, and &quot;udisksctl mount -b /dev/sdX1&quot; mounts one.</source>
        <translation>请确认读写器已连接并已挂载。程序只能看到已挂载的驱动器：
“lsblk”可查看连接和挂载情况，“udisksctl mount -b /dev/sdX1”可挂载驱动器。</translation>
    </message>
    <message>
        <source>Does the system not call it removable, declare its folder:</source>
        <translation>如果系统没有将其视为可移动驱动器，请指定其文件夹：</translation>
    </message>
    <message>
        <source>May you write there? A mount made by root needs the option uid=.</source>
        <translation>请确认您有写入权限。由 root 挂载时，需要加上选项 uid=。</translation>
    </message>
    <message>
        <source>GBDRIVER_DRIVES is set: only the drives that it declares are looked at.</source>
        <translation>已设置 GBDRIVER_DRIVES：只查看其中指定的驱动器。</translation>
    </message>
    <message>
        <source>Is the reader plugged in, and does the Explorer show it as a removable drive?</source>
        <translation>请确认读写器已连接，且在文件资源管理器中显示为可移动驱动器。</translation>
    </message>
    <message>
        <source>If it shows no drive letter, give it one in the Disk Management.</source>
        <translation>如果没有显示盘符，请在“磁盘管理”中为其分配盘符。</translation>
    </message>
</context>
<context>
    <name>DriveFindings</name>
    <message>
        <source>it has no identity file</source>
        <translation>没有识别文件</translation>
    </message>
    <message>
        <source>its identity could not be read: %1</source>
        <translation>无法读取识别信息：%1</translation>
    </message>
    <message>
        <source>taken as the reader</source>
        <translation>已选为读写器</translation>
    </message>
    <message>
        <source>taken, though %1: is it a reader?</source>
        <translation>已选为读写器，但%1；请确认是否为读写器</translation>
    </message>
    <message>
        <source>also a reader, but %1: comes first</source>
        <translation>也是读写器，但优先使用 %1:</translation>
    </message>
    <message>
        <source>would pass as a reader, though %1, but %2: comes first</source>
        <translation>可选为读写器（但%1），不过优先使用 %2:</translation>
    </message>
    <message>
        <source>%1, label &quot;%2&quot;</source>
        <translation>%1，卷标“%2”</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1，%2</translation>
    </message>
    <message>
        <source>no label can be read: %1</source>
        <translation>无法读取卷标：%1</translation>
    </message>
    <message>
        <source>identity: &quot;%1&quot;</source>
        <translation>识别信息：“%1”</translation>
    </message>
    <message>
        <source>missing (the first command makes it)</source>
        <translation>不存在（执行第一条命令时会创建）</translation>
    </message>
    <message>
        <source>drive of unknown type</source>
        <translation>未知类型的驱动器</translation>
    </message>
    <message>
        <source>no drive any more</source>
        <translation>驱动器已不存在</translation>
    </message>
    <message>
        <source>removable drive</source>
        <translation>可移动驱动器</translation>
    </message>
    <message>
        <source>fixed disk</source>
        <translation>固定磁盘</translation>
    </message>
    <message>
        <source>network drive</source>
        <translation>网络驱动器</translation>
    </message>
    <message>
        <source>CD or DVD drive</source>
        <translation>CD 或 DVD 驱动器</translation>
    </message>
    <message>
        <source>RAM disk</source>
        <translation>RAM 磁盘</translation>
    </message>
    <message>
        <source>type %1</source>
        <translation>类型 %1</translation>
    </message>
    <message>
        <source>not taken: a reader is a removable drive, this is not</source>
        <translation>未选用：读写器是可移动驱动器，而此驱动器不是</translation>
    </message>
    <message>
        <source>not taken: its K-DRIVER.DMP ends before the identity</source>
        <translation>未选用：其中的 K-DRIVER.DMP 过短，不含识别信息</translation>
    </message>
    <message>
        <source>opens</source>
        <translation>可以打开</translation>
    </message>
    <message>
        <source>missing</source>
        <translation>不存在</translation>
    </message>
    <message>
        <source>fails: %1</source>
        <translation>无法打开：%1</translation>
    </message>
</context>
<context>
    <name>FamicomThread</name>
    <message>
        <source>Read file :</source>
        <translation>读取文件：</translation>
    </message>
    <message>
        <source>Read </source>
        <translation>已读取 </translation>
    </message>
    <message>
        <source> Bytes</source>
        <translation> 字节</translation>
    </message>
    <message>
        <source>script error: %1</source>
        <translation>脚本出错：%1</translation>
    </message>
    <message>
        <source>script error: %1 (%2)</source>
        <translation>脚本出错：%1 (%2)</translation>
    </message>
    <message>
        <source>Can not found device.</source>
        <translation>未找到读写器。</translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation>无法初始化读写器。</translation>
    </message>
    <message>
        <source>Not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>Open File error.</source>
        <translation>打开文件失败。</translation>
    </message>
    <message>
        <source>Read File error.</source>
        <translation>读取文件失败。</translation>
    </message>
    <message>
        <source>Save file error.</source>
        <translation>保存文件失败。</translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateTab</name>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>How far the update has come</source>
        <translation>固件更新的进度</translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation>更新固件</translation>
    </message>
    <message>
        <source>First turn off anti-virus software.</source>
        <translation>请先关闭杀毒软件。</translation>
    </message>
    <message>
        <source>Next press &quot;Update Firmware&quot; to update firmware.</source>
        <translation>然后请点击“更新固件”，开始更新固件。</translation>
    </message>
    <message>
        <source><byte value="xd"/>
</source>
        <translation><byte value="xd"/>
</translation>
    </message>
    <message>
        <source>Starting update firmware , pelase wait...</source>
        <translation>开始更新固件，请稍候...</translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation>&gt;成功！</translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation>&gt;操作失败。</translation>
    </message>
    <message>
        <source>Nothing was sent to the reader: this program transfers no firmware.</source>
        <translation>未向读写器发送任何数据：本程序不传输固件。</translation>
    </message>
</context>
<context>
    <name>GuardedJob</name>
    <message>
        <source>Reading</source>
        <translation>正在读取</translation>
    </message>
    <message>
        <source>Reading again</source>
        <translation>正在再次读取</translation>
    </message>
    <message>
        <source>Keeping a backup</source>
        <translation>正在备份</translation>
    </message>
    <message>
        <source>Writing</source>
        <translation>正在写入</translation>
    </message>
    <message>
        <source>Comparing</source>
        <translation>正在比对</translation>
    </message>
    <message>
        <source>Erasing; Cancel ends the wait</source>
        <translation>正在擦除；“取消”可结束等待</translation>
    </message>
    <message>
        <source>The reader does not answer. Unplug it, or close the window.</source>
        <translation>读写器没有响应。请拔下读写器，或关闭窗口。</translation>
    </message>
    <message>
        <source>The reader has not answered for %1 seconds.</source>
        <translation>读写器已有 %1 秒没有响应。</translation>
    </message>
    <message>
        <source>Unplug it to end the job, or close the window twice to leave the job behind; it only reads.</source>
        <translation>请拔下读写器以结束任务；也可以关闭窗口两次，不等任务结束就退出，该任务只读取，不写入。</translation>
    </message>
    <message>
        <source>The cartridge is being written. If no answer ever comes, unplug the reader: that ends the job, and the cartridge is then partly written.</source>
        <translation>正在写入卡带。如果读写器始终没有响应，请拔下读写器：任务会随之结束，但届时卡带只写入了一部分内容。</translation>
    </message>
</context>
<context>
    <name>Judgement</name>
    <message>
        <source>%1 of %2 bytes were written</source>
        <translation>共 %2 字节，已写入 %1 字节</translation>
    </message>
    <message>
        <source>%1 of %2 bytes arrived</source>
        <translation>共 %2 字节，已收到 %1 字节</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1：%2</translation>
    </message>
    <message>
        <source>The file could not be written.</source>
        <translation>无法保存文件。</translation>
    </message>
    <message>
        <source>%1 bytes, read back and equal</source>
        <translation>%1 字节，回读比对结果相同</translation>
    </message>
    <message>
        <source>%1 bytes; nothing was read back and compared</source>
        <translation>%1 字节；未回读比对</translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file, read back and equal</source>
        <translation>文件共 %2 字节，只写入了前 %1 字节，回读比对结果相同</translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file; nothing was read back and compared</source>
        <translation>文件共 %2 字节，只写入了前 %1 字节；未回读比对</translation>
    </message>
    <message>
        <source>verified: %1</source>
        <translation>已验证：%1</translation>
    </message>
    <message>
        <source>consistent: %1</source>
        <translation>无矛盾：%1</translation>
    </message>
    <message>
        <source>unverified: %1</source>
        <translation>未验证：%1</translation>
    </message>
    <message>
        <source>unstable: %1</source>
        <translation>不稳定：%1</translation>
    </message>
    <message>
        <source>suspicious: %1</source>
        <translation>可疑：%1</translation>
    </message>
    <message>
        <source>written: %1</source>
        <translation>已写入：%1</translation>
    </message>
    <message>
        <source>incomplete: %1</source>
        <translation>不完整：%1</translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation>失败：%1</translation>
    </message>
    <message>
        <source>refused: %1</source>
        <translation>拒绝执行：%1</translation>
    </message>
    <message>
        <source>stopped: %1</source>
        <translation>已停止：%1</translation>
    </message>
    <message>
        <source>The cartridge is of another system than the settings say.</source>
        <translation>卡带的平台与设置不符。</translation>
    </message>
    <message>
        <source>The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can be read.</source>
        <translation>卡带总线最多只能访问 32 MiB (256 Mb)，GBA ROM 超出的部分无法读取。</translation>
    </message>
    <message>
        <source>No flash chip answers and every byte is FF: so reads an empty slot, and nobody would notice that nothing is written.</source>
        <translation>没有 Flash 芯片响应，且所有字节都是 FF：空卡槽读出来也是这样；即使什么都没写入，也无从发现。</translation>
    </message>
    <message>
        <source>&quot;Read again and compare&quot; in the menu at the top right shows whether two reads are equal.</source>
        <translation>右上角菜单中的“再次读取并比对”可查看两次读取的结果是否相同。</translation>
    </message>
    <message>
        <source>Do not use this file. Clean the contacts, push the cartridge in again and read it once more.</source>
        <translation>请勿使用此文件。请清洁触点，重新插好卡带后再读取一次。</translation>
    </message>
    <message>
        <source>Do not trust this file. See that the settings are right (Info selects them), clean the contacts, push the cartridge in again and read it once more.</source>
        <translation>请勿信任此文件。请确认设置正确（“卡带信息”会自动选择设置），清洁触点，重新插好卡带后再读取一次。</translation>
    </message>
    <message>
        <source>Leave the reader plugged in, wait until the other program has ended, and try again.</source>
        <translation>请保持读写器连接，等其他程序结束后重试。</translation>
    </message>
    <message>
        <source>Take that drive out. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation>请移除该驱动器。右上角菜单中的“为何找不到读写器？”有详细说明。</translation>
    </message>
    <message>
        <source>Plug the reader in again. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation>请重新连接读写器。右上角菜单中的“为何找不到读写器？”有详细说明。</translation>
    </message>
    <message>
        <source>Check the plug of the reader and the contacts of the cartridge, and try again.</source>
        <translation>请检查读写器的插头和卡带的触点，然后重试。</translation>
    </message>
    <message>
        <source>What the cartridge held before is in %1</source>
        <translation>卡带原有的内容保存在 %1</translation>
    </message>
    <message>
        <source>The chip does not say how large it is; this is what the mapper shows of it.</source>
        <translation>芯片不提供自身容量；这里保存的是通过所选 Mapper 能读到的部分。</translation>
    </message>
    <message>
        <source>To put it back, write that file with FLASH.</source>
        <translation>要恢复原有内容，请用“烧录 ROM”写入该文件。</translation>
    </message>
    <message>
        <source>To put it back, write that file with Write RAM.</source>
        <translation>要恢复原有内容，请用“写入存档”写入该文件。</translation>
    </message>
    <message>
        <source>Press Info to select what the cartridge says of itself.</source>
        <translation>请点击“卡带信息”，按卡带自身的信息选择设置。</translation>
    </message>
    <message>
        <source>Choose another name or folder, or make room.</source>
        <translation>请选择其他文件名或文件夹，或腾出磁盘空间。</translation>
    </message>
    <message>
        <source>Push the cartridge in again, or tick &quot;Verify the data after writing&quot;.</source>
        <translation>请重新插好卡带，或勾选“写入后校验数据”。</translation>
    </message>
    <message>
        <source>Choose the mapper of the board, whatever the header says.</source>
        <translation>请选择电路板实际使用的 Mapper，不以卡带头为准。</translation>
    </message>
    <message>
        <source>See that the settings are right and that the contacts are clean.</source>
        <translation>请确认设置正确、触点清洁。</translation>
    </message>
    <message>
        <source>Choose 128 K.</source>
        <translation>请选择 128 K。</translation>
    </message>
    <message>
        <source>Make room in the backup folder, or see that you may write there.</source>
        <translation>请为备份文件夹腾出磁盘空间，或确认您有写入权限。</translation>
    </message>
    <message>
        <source>%1 bytes, SHA-1 %2</source>
        <translation>%1 字节，SHA-1 %2</translation>
    </message>
    <message>
        <source>The cartridge that Info has seen has %1 bytes of save memory, and only %2 of them were moved. Choose the larger size.</source>
        <translation>“卡带信息”查到的存档容量为 %1 字节，此次只传输了 %2 字节。请选择更大的容量。</translation>
    </message>
    <message>
        <source>The file that was there before is in %1</source>
        <translation>原有的文件保存在 %1</translation>
    </message>
    <message>
        <source>Left by a program that was ended: %1
&quot;gbdriver-cli tidy&quot; removes such files.</source>
        <translation>程序中途结束时遗留的文件：%1
“gbdriver-cli tidy”可删除此类文件。</translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right.</source>
        <translation>如果您确信无误，可在右上角菜单中关闭“写入前检查并备份”。</translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right; then no backup is made.</source>
        <translation>如果您确信无误，可在右上角菜单中关闭“写入前检查并备份”，但关闭后不会进行备份。</translation>
    </message>
    <message>
        <source>What was read of the cartridge is in %1</source>
        <translation>已读取的卡带内容保存在 %1</translation>
    </message>
    <message>
        <source>Not looked up: %1</source>
        <translation>无法用于查询：%1</translation>
    </message>
</context>
<context>
    <name>MainTab</name>
    <message>
        <source>Read ROM to...</source>
        <translation>将 ROM 导出到...</translation>
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
        <translation>正在将 ROM 导出到文件：</translation>
    </message>
    <message>
        <source>Read save to...</source>
        <translation>将存档导出到...</translation>
    </message>
    <message>
        <source>GB/GBC save (*.sav)</source>
        <translation>GB/GBC 存档 (*.sav)</translation>
    </message>
    <message>
        <source>GBA save (*.sav)</source>
        <translation>GBA 存档 (*.sav)</translation>
    </message>
    <message>
        <source>Reading data from save to file:</source>
        <translation>正在将存档导出到文件：</translation>
    </message>
    <message>
        <source>Get ROM File.</source>
        <translation>选择 ROM 文件</translation>
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
        <translation>正在将此 ROM 文件烧录到卡带：</translation>
    </message>
    <message>
        <source>Get Save File.</source>
        <translation>选择存档文件</translation>
    </message>
    <message>
        <source>Writing save to cartridge from file:</source>
        <translation>正在将此存档文件写入卡带：</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>卡带信息</translation>
    </message>
    <message>
        <source>Dump</source>
        <translation>导出 ROM</translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation>烧录 ROM</translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation>导出存档</translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation>写入存档</translation>
    </message>
    <message>
        <source>Show cartridge information!</source>
        <translation>显示卡带信息</translation>
    </message>
    <message>
        <source>Dump ROM from cartridge!</source>
        <translation>从卡带导出 ROM</translation>
    </message>
    <message>
        <source>Flash ROM to a writeable cartridge!</source>
        <translation>将 ROM 烧录到可擦写卡带</translation>
    </message>
    <message>
        <source>Read SRAM from cartridge!</source>
        <translation>从卡带导出存档</translation>
    </message>
    <message>
        <source>Write SRAM to cartridge!</source>
        <translation>将存档写入卡带</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>进度</translation>
    </message>
    <message>
        <source>How far the job that runs has come</source>
        <translation>当前任务的进度</translation>
    </message>
    <message>
        <source>Velora Driver Series for GB/GBC/GBA 3.0 started.</source>
        <translation>Velora Driver Series for GB/GBC/GBA 3.0 已启动。</translation>
    </message>
    <message>
        <source>Support all functions, need &lt;span style=&quot;color: #ffcc00;&quot;&gt;QDX_PCB02_FW303&lt;/span&gt; firmware.</source>
        <translation>使用全部功能需要 &lt;span style=&quot;color: #ffcc00;&quot;&gt;QDX_PCB02_FW303&lt;/span&gt; 固件。</translation>
    </message>
    <message>
        <source>To dump GB/GBC cartridge,please switch power to 5V.</source>
        <translation>导出 GB/GBC 卡带时，请将电压切换到 5V。</translation>
    </message>
    <message>
        <source>To dump GBA cartridge,please switch power to 3.3V.</source>
        <translation>导出 GBA 卡带时，请将电压切换到 3.3V。</translation>
    </message>
    <message>
        <source>Part of homebrew GB/GBC flash cart need 3.3V power.</source>
        <translation>部分自制 GB/GBC 烧录卡需要 3.3V 电压。</translation>
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
        <translation>Flash 芯片数据宽度为 8 位</translation>
    </message>
    <message>
        <source>Flash chip is 16bit width</source>
        <translation>Flash 芯片数据宽度为 16 位</translation>
    </message>
    <message>
        <source>Flash chip size is :</source>
        <translation>Flash 芯片容量：</translation>
    </message>
    <message>
        <source>KB</source>
        <translation>KB</translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation>&gt;操作失败。</translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation>&gt;成功！</translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation>无法初始化读写器。</translation>
    </message>
    <message>
        <source>Not exists script file :</source>
        <translation>脚本文件不存在：</translation>
    </message>
    <message>
        <source>Can not found dump device.</source>
        <translation>未找到读写器。</translation>
    </message>
    <message>
        <source>--Device information--</source>
        <translation>--读写器信息--</translation>
    </message>
    <message>
        <source>Driver label: </source>
        <translation>卷标：</translation>
    </message>
    <message>
        <source>Device firmware: </source>
        <translation>读写器固件：</translation>
    </message>
    <message>
        <source>B</source>
        <translation>B</translation>
    </message>
    <message>
        <source>Read ROM error.</source>
        <translation>读取 ROM 失败。</translation>
    </message>
    <message>
        <source>--GB/GBC Cartridge information--</source>
        <translation>--GB/GBC 卡带信息--</translation>
    </message>
    <message>
        <source>Title: </source>
        <translation>标题：</translation>
    </message>
    <message>
        <source>Cart type: </source>
        <translation>卡带类型：</translation>
    </message>
    <message>
        <source>ROM Size: </source>
        <translation>ROM 容量：</translation>
    </message>
    <message>
        <source>RAM Size: </source>
        <translation>存档容量：</translation>
    </message>
    <message>
        <source>Can not auto detect cartridge information.</source>
        <translation>无法自动识别卡带信息。</translation>
    </message>
    <message>
        <source>Maybe no insert cart or it&apos;s a black cart.</source>
        <translation>可能没有插入卡带，或插入的是无法识别的卡带。</translation>
    </message>
    <message>
        <source>Also try:</source>
        <translation>还可以尝试：</translation>
    </message>
    <message>
        <source> 1.Turn off anti-virus software.</source>
        <translation> 1.关闭杀毒软件。</translation>
    </message>
    <message>
        <source> 2.Damaged or Dirty.</source>
        <translation> 2.检查卡带是否损坏、触点是否脏污。</translation>
    </message>
    <message>
        <source> 3.Switch correct volte on dump board.</source>
        <translation> 3.在读写器上切换到正确的电压。</translation>
    </message>
    <message>
        <source> 4.Try again.</source>
        <translation> 4.重试。</translation>
    </message>
    <message>
        <source>Detect GBA cartridge, but can not detect detail.</source>
        <translation>检测到 GBA 卡带，但无法识别详细信息。</translation>
    </message>
    <message>
        <source>--GBA Cartridge information--</source>
        <translation>--GBA 卡带信息--</translation>
    </message>
    <message>
        <source>Year: </source>
        <translation>年份：</translation>
    </message>
    <message>
        <source>Publisher: </source>
        <translation>发行商：</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>the reader did not take the command</source>
        <translation>读写器未接受命令</translation>
    </message>
    <message>
        <source>only %1 of %2 bytes arrived</source>
        <translation>共 %2 字节，只收到 %1 字节</translation>
    </message>
    <message>
        <source>the reader did not answer</source>
        <translation>读写器没有响应</translation>
    </message>
    <message>
        <source>(what the script prints is not shown any more)</source>
        <translation>（不再显示脚本输出的内容）</translation>
    </message>
    <message>
        <source>the script suspended itself</source>
        <translation>脚本自行挂起</translation>
    </message>
    <message>
        <source>%1 suspended itself</source>
        <translation>函数 %1 自行挂起</translation>
    </message>
    <message>
        <source>the script has no function %1</source>
        <translation>脚本中没有函数 %1</translation>
    </message>
    <message>
        <source>Start dump rom...</source>
        <translation>开始导出 ROM...</translation>
    </message>
    <message>
        <source>Dump rom finish.</source>
        <translation>ROM 导出完成。</translation>
    </message>
    <message>
        <source>Start dump save...</source>
        <translation>开始导出存档...</translation>
    </message>
    <message>
        <source>Dump save finish.</source>
        <translation>存档导出完成。</translation>
    </message>
    <message>
        <source>Start write save...</source>
        <translation>开始写入存档...</translation>
    </message>
    <message>
        <source>Write save finish.</source>
        <translation>存档写入完成。</translation>
    </message>
    <message>
        <source>Erase flash chip finish.</source>
        <translation>Flash 芯片擦除完成。</translation>
    </message>
    <message>
        <source>the reader did not answer while the chip was being erased</source>
        <translation>擦除芯片期间，读写器没有响应</translation>
    </message>
    <message>
        <source>the chip was not erased after %1 seconds</source>
        <translation>%1 秒后芯片仍未擦除完成</translation>
    </message>
    <message>
        <source>Start erase flash chip...</source>
        <translation>开始擦除 Flash 芯片...</translation>
    </message>
    <message>
        <source>the reader did not take the command that erases the save</source>
        <translation>读写器未接受擦除存档的命令</translation>
    </message>
    <message>
        <source>Start flash ROM...</source>
        <translation>开始烧录 ROM...</translation>
    </message>
    <message>
        <source>Flash ROM finish.</source>
        <translation>ROM 烧录完成。</translation>
    </message>
    <message>
        <source>dump core script error
</source>
        <translation>导出用脚本出错。
</translation>
    </message>
    <message>
        <source>Unknow operate!</source>
        <translation>未知操作。</translation>
    </message>
    <message>
        <source>the script needs more than %1 MiB of memory</source>
        <translation>脚本所需内存超过 %1 MiB</translation>
    </message>
    <message>
        <source>the script is nested too deeply</source>
        <translation>脚本嵌套过深</translation>
    </message>
    <message>
        <source>the script did nothing with the cartridge for %1 seconds</source>
        <translation>脚本已有 %1 秒未对卡带进行任何操作</translation>
    </message>
    <message>
        <source>the job was left</source>
        <translation>任务未完成就退出了</translation>
    </message>
</context>
<context>
    <name>ReaderCorner</name>
    <message>
        <source>Demo reader</source>
        <translation>演示读写器</translation>
    </message>
    <message>
        <source>No reader</source>
        <translation>未找到读写器</translation>
    </message>
    <message>
        <source>nameless reader</source>
        <translation>未命名读写器</translation>
    </message>
    <message>
        <source>This reader and its cartridge exist only in this program. Opens the menu of all actions.</source>
        <translation>此读写器和卡带由程序模拟，并非实物；点击打开操作菜单</translation>
    </message>
    <message>
        <source>No reader has been found. Opens the menu of all actions.</source>
        <translation>尚未找到读写器；点击打开操作菜单</translation>
    </message>
    <message>
        <source>The reader that jobs use, by its drive. Opens the menu of all actions.</source>
        <translation>任务所用的读写器，以盘符表示；点击打开操作菜单</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Asks the job that runs to stop; the log says how it leaves the cartridge.</source>
        <translation>请求当前任务停止；日志会说明卡带处于什么状态</translation>
    </message>
    <message>
        <source>Info</source>
        <translation>卡带信息</translation>
    </message>
    <message>
        <source>Looks for the reader, says what it and its cartridge are, and chooses the settings that fit.</source>
        <translation>查找读写器，显示读写器和卡带的信息，并选择合适的设置</translation>
    </message>
    <message>
        <source>Dump</source>
        <translation>导出 ROM</translation>
    </message>
    <message>
        <source>Copies the ROM of the cartridge into a file.</source>
        <translation>将卡带中的 ROM 复制到文件</translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation>烧录 ROM</translation>
    </message>
    <message>
        <source>Erases a rewritable cartridge and writes a ROM file into it.</source>
        <translation>擦除可擦写卡带，再将 ROM 文件写入其中</translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation>导出存档</translation>
    </message>
    <message>
        <source>Copies the save memory of the cartridge into a file.</source>
        <translation>将卡带中的存档复制到文件</translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation>写入存档</translation>
    </message>
    <message>
        <source>Writes a save file into the cartridge, over the save that is there.</source>
        <translation>将存档文件写入卡带，覆盖卡带中原有的存档</translation>
    </message>
    <message>
        <source>Back up this cartridge…</source>
        <translation>备份此卡带…</translation>
    </message>
    <message>
        <source>Copies ROM and save memory into a folder, with a report about both.</source>
        <translation>将 ROM 和存档复制到文件夹，并附上两者的报告</translation>
    </message>
    <message>
        <source>Read again and compare</source>
        <translation>再次读取并比对</translation>
    </message>
    <message>
        <source>Reads what was dumped last once more and says whether both reads are equal.</source>
        <translation>将最近导出的内容再读取一次，判断两次读取的结果是否相同</translation>
    </message>
    <message>
        <source>Check a ROM file…</source>
        <translation>检查 ROM 文件…</translation>
    </message>
    <message>
        <source>Says what a ROM file is worth. No reader is needed for it.</source>
        <translation>判断 ROM 文件是否可信，无需读写器</translation>
    </message>
    <message>
        <source>Why is no reader found?</source>
        <translation>为何找不到读写器？</translation>
    </message>
    <message>
        <source>Looks at every drive and says in the log why it is or is not taken as the reader.</source>
        <translation>检查每个驱动器，并在日志中说明其是否被选为读写器及原因</translation>
    </message>
    <message>
        <source>Guard writes</source>
        <translation>写入前检查并备份</translation>
    </message>
    <message>
        <source>Keeps what is in the cartridge in the backup folder before anything is written over it.</source>
        <translation>写入前，先将卡带中原有的内容保存到备份文件夹</translation>
    </message>
    <message>
        <source>Read twice what no table knows</source>
        <translation>未收录的 ROM 读取两次</translation>
    </message>
    <message>
        <source>Reads a ROM a second time if it is not among the known dumps, and compares. Takes twice as long.</source>
        <translation>如果 ROM 未收录，则再读取一次并比对；耗时加倍</translation>
    </message>
    <message>
        <source>Open the backup folder</source>
        <translation>打开备份文件夹</translation>
    </message>
    <message>
        <source>Shows the folder in which old saves, ROMs and files are kept.</source>
        <translation>显示存放旧存档、旧 ROM 和旧文件的文件夹</translation>
    </message>
    <message>
        <source>Copy the log</source>
        <translation>复制日志</translation>
    </message>
    <message>
        <source>Puts the text of the whole log on the clipboard.</source>
        <translation>将全部日志复制到剪贴板</translation>
    </message>
    <message>
        <source>Use the demo reader</source>
        <translation>使用演示读写器</translation>
    </message>
    <message>
        <source>Tries everything on a reader and a cartridge that exist only in this program. Not beside a real reader.</source>
        <translation>用程序模拟的读写器和卡带试用各项功能；连接真实读写器时不可用</translation>
    </message>
    <message>
        <source>Reader: %1</source>
        <translation>读写器：%1</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>SYS TYPE:</source>
        <translation>平台：</translation>
    </message>
    <message>
        <source>Verify the data after writing</source>
        <translation>写入后校验数据</translation>
    </message>
    <message>
        <source>What kind of cartridge is in the slot</source>
        <translation>卡槽中卡带的种类</translation>
    </message>
    <message>
        <source>GB/GBC: the mapper; GBA: the size of the ROM</source>
        <translation>GB/GBC：Mapper；GBA：ROM 容量</translation>
    </message>
    <message>
        <source>GB/GBC: the size of the ROM; GBA: the kind of save</source>
        <translation>GB/GBC：ROM 容量；GBA：存档类型</translation>
    </message>
    <message>
        <source>The size of the save memory</source>
        <translation>存档芯片的容量</translation>
    </message>
    <message>
        <source>Reads back what was written and compares it</source>
        <translation>回读已写入的数据并进行比对</translation>
    </message>
    <message>
        <source>MBC TYPE:</source>
        <translation>MBC 类型：</translation>
    </message>
    <message>
        <source>ROM SIZE:</source>
        <translation>ROM 容量：</translation>
    </message>
    <message>
        <source>RAM SIZE:</source>
        <translation>存档容量：</translation>
    </message>
    <message>
        <source>RAM TYPE:</source>
        <translation>存档类型：</translation>
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
        <translation>本程序与读写器配套使用，可以：
- 备份自有卡带中的游戏，并在电脑上游玩；
- 在卡带与电脑之间传输存档；
- 直接在实机上测试自己编写的游戏
  （需要可擦写卡带）。
</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>Velora Cartridge Driver/Dumper</source>
        <translation>Velora Cartridge Driver/Dumper</translation>
    </message>
    <message>
        <source>GB/GBC/GBA Cartridge Dumper</source>
        <translation>GB/GBC/GBA 卡带读写器</translation>
    </message>
    <message>
        <source>Web site: </source>
        <translation>网站：</translation>
    </message>
    <message>
        <source>Email: </source>
        <translation>电子邮箱：</translation>
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
        <translation>原有的文件保存在 %1</translation>
    </message>
    <message>
        <source>GB Driver 3.0 build - </source>
        <translation>GB Driver 3.0 编译日期 - </translation>
    </message>
    <message>
        <source>GB</source>
        <translation>GB</translation>
    </message>
    <message>
        <source>Update</source>
        <translation>固件更新</translation>
    </message>
    <message>
        <source>About</source>
        <translation>关于</translation>
    </message>
    <message>
        <source>The cartridge is being written. The window stays until that has ended.</source>
        <translation>正在写入卡带。写入结束之前，窗口不会关闭。</translation>
    </message>
    <message>
        <source>A job is running and has been asked to stop. The window closes when it has ended.</source>
        <translation>任务正在进行，已请求停止。任务结束后，窗口会关闭。</translation>
    </message>
    <message>
        <source>The job has not ended yet. Close the window again to leave it behind; it only reads.</source>
        <translation>任务尚未结束。再次关闭窗口，即可不等任务结束就退出；该任务只读取，不写入。</translation>
    </message>
    <message>
        <source>The window stays open, for you to read this. Close it again.</source>
        <translation>窗口暂不关闭，以便阅读以上内容。阅读后请再次关闭窗口。</translation>
    </message>
</context>
<context>
    <name>UpdateThread</name>
    <message>
        <source>Update firmware successful.</source>
        <translation>固件更新成功。</translation>
    </message>
</context>
<context>
    <name>Words</name>
    <message>
        <source>The save of an MBC6 cannot be read or written: no script knows this mapper.</source>
        <translation>无法读取或写入 MBC6 的存档：没有支持此 Mapper 的脚本。</translation>
    </message>
    <message>
        <source>The save of an MBC7 cannot be read or written: it lies in a serial EEPROM that moves one bit at a time, and the reader has no command for that.</source>
        <translation>无法读取或写入 MBC7 的存档：存档位于逐位传输的串行 EEPROM 中，读写器没有相应的命令。</translation>
    </message>
    <message>
        <source>The save of a TAMA5 cannot be read or written: it lies behind registers, and the bytes of another save would destroy it.</source>
        <translation>无法读取或写入 TAMA5 的存档：存档要通过寄存器访问，写入其他存档的数据会将其破坏。</translation>
    </message>
    <message>
        <source>The header names another mapper than was chosen; what is meant for one mapper can destroy what another keeps.</source>
        <translation>卡带头标明的 Mapper 与所选的不同；用于一种 Mapper 的操作可能会破坏另一种 Mapper 保存的数据。</translation>
    </message>
    <message>
        <source>The game table names another kind of save memory than was chosen; the wrong commands can destroy what a read with them does not show.</source>
        <translation>游戏数据库标明的存档类型与所选的不同；错误的命令可能会破坏用这些命令读不出来的数据。</translation>
    </message>
    <message>
        <source>The cartridge names another size of its save memory than was chosen; the write would leave out a part of it or go over another.</source>
        <translation>卡带标明的存档容量与所选的不同；写入时会漏掉一部分存档，或覆盖另一部分。</translation>
    </message>
    <message>
        <source>Warning: all bytes of %1 are equal. So looks an empty save, but also one that was read with bad contacts or the wrong settings.</source>
        <translation>警告：%1 的所有字节都相同。空存档是这样，触点接触不良或设置错误时读出的存档也是这样。</translation>
    </message>
    <message>
        <source>The reader has no command that writes a GBA ROM.</source>
        <translation>读写器没有写入 GBA ROM 的命令。</translation>
    </message>
    <message>
        <source>Cartridges with this mapper have no flash chip that can be written.</source>
        <translation>使用此 Mapper 的卡带没有可写入的 Flash 芯片。</translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation>文件为空。</translation>
    </message>
    <message>
        <source>The file has %1 bytes; with this mapper a flash chip takes %2.</source>
        <translation>文件有 %1 字节；使用此 Mapper 时，Flash 芯片最多可写入 %2 字节。</translation>
    </message>
    <message>
        <source>The last bank of the file has %1 bytes; %2 are the fewest that the reader can program. Pad the file.</source>
        <translation>文件的最后一个 bank 只有 %1 字节；读写器每次至少写入 %2 字节。请将文件补足。</translation>
    </message>
    <message>
        <source>The file has %1 bytes, the flash chip %2.</source>
        <translation>文件有 %1 字节，Flash 芯片只有 %2 字节。</translation>
    </message>
    <message>
        <source>The chip is erased as a whole, and a backup of %1 bytes may be only a part of it: up to %2 can be in it.</source>
        <translation>擦除会清空整个芯片，而 %1 字节的备份可能只是其中一部分：芯片中最多可能有 %2 字节的数据。</translation>
    </message>
    <message>
        <source>The chip has %2 bytes, and what is read of it repeats its first %1: so it reads behind another mapper than the one that was chosen, and a backup would be a part of it.</source>
        <translation>芯片有 %2 字节，但读出的内容只是在重复前 %1 字节：可见其 Mapper 与所选的不同，备份只会是其中一部分。</translation>
    </message>
    <message>
        <source>their lengths: %1 and %2 bytes</source>
        <translation>长度分别为 %1 和 %2 字节</translation>
    </message>
    <message>
        <source>it has become shorter</source>
        <translation>文件变短了</translation>
    </message>
    <message>
        <source>known dumps</source>
        <translation>已收录的 ROM</translation>
    </message>
    <message>
        <source>The cartridge was not touched.</source>
        <translation>未对卡带进行任何操作。</translation>
    </message>
    <message>
        <source>The cartridge was only looked at.</source>
        <translation>只查看了卡带信息。</translation>
    </message>
    <message>
        <source>The cartridge was only read.</source>
        <translation>只读取了卡带。</translation>
    </message>
    <message>
        <source>The cartridge was read, which also writes to its bus.</source>
        <translation>已读取卡带，而读取本身也会向卡带总线写入。</translation>
    </message>
    <message>
        <source>Nothing was read.</source>
        <translation>未读取任何数据。</translation>
    </message>
    <message>
        <source>Nothing was written; the cartridge is as it was.</source>
        <translation>未写入任何数据；卡带保持原样。</translation>
    </message>
    <message>
        <source>The write was not begun; the cartridge was read, which also writes to its bus.</source>
        <translation>未开始写入；已读取卡带，而读取本身也会向卡带总线写入。</translation>
    </message>
    <message>
        <source>The cartridge may be partly written.</source>
        <translation>卡带可能只写入了一部分。</translation>
    </message>
    <message>
        <source>What the chip held may be lost.</source>
        <translation>芯片中原有的内容可能已丢失。</translation>
    </message>
    <message>
        <source>The cartridge was written.</source>
        <translation>卡带已写入。</translation>
    </message>
    <message>
        <source>there are no bytes</source>
        <translation>没有任何字节</translation>
    </message>
    <message>
        <source>all bytes are equal: an empty slot or no contact</source>
        <translation>所有字节都相同：卡槽为空或接触不良</translation>
    </message>
    <message>
        <source>there is no boot logo in the header</source>
        <translation>卡带头中没有开机 Logo</translation>
    </message>
    <message>
        <source>the header&apos;s checksum is wrong</source>
        <translation>卡带头校验和错误</translation>
    </message>
    <message>
        <source>the checksum over the whole ROM is wrong</source>
        <translation>全局校验和错误</translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before</source>
        <translation>从字节 %1 起，内容全部与前面重复</translation>
    </message>
    <message>
        <source>from byte %1 no memory answers</source>
        <translation>从字节 %1 起，没有芯片响应</translation>
    </message>
    <message>
        <source>the header speaks of %1 bytes, these are %2</source>
        <translation>卡带头标明 %1 字节，实际为 %2 字节</translation>
    </message>
    <message>
        <source>not a known dump</source>
        <translation>未收录的 ROM</translation>
    </message>
    <message>
        <source>such a ROM has no checksum over all of its bytes</source>
        <translation>这类 ROM 没有涵盖全部字节的校验和</translation>
    </message>
    <message>
        <source>nobody saw it read twice</source>
        <translation>无法确认是否读取过两次</translation>
    </message>
    <message>
        <source>read only once</source>
        <translation>只读取了一次</translation>
    </message>
    <message>
        <source>reads differ in %1</source>
        <translation>各次读取的结果不同（%1）</translation>
    </message>
    <message>
        <source>logo, header checksum and checksum over the whole ROM are right</source>
        <translation>Logo、卡带头校验和、全局校验和均正确</translation>
    </message>
    <message>
        <source>the checksum is a sum and does not see swapped banks</source>
        <translation>校验和只是把各字节相加，无法发现 bank 顺序错乱</translation>
    </message>
    <message>
        <source>%1 equal reads</source>
        <translation>%1 次读取的结果相同</translation>
    </message>
    <message>
        <source>all bytes are equal: an empty save, no contact, or the wrong kind of save memory</source>
        <translation>所有字节都相同：存档为空、接触不良，或存档类型错误</translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before: two copies, or a smaller save memory</source>
        <translation>从字节 %1 起，内容全部与前面重复：可能是两份副本，也可能是存档芯片容量较小</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1（%2）</translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation>%1；%2</translation>
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
        <translation>未找到读写器。</translation>
    </message>
    <message>
        <source>The reader does not answer.</source>
        <translation>读写器没有响应。</translation>
    </message>
    <message>
        <source>Another program uses the reader.</source>
        <translation>其他程序正在使用读写器。</translation>
    </message>
    <message>
        <source>The drive that was taken for the reader is none.</source>
        <translation>选为读写器的驱动器并不是读写器。</translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation>内存不足。</translation>
    </message>
    <message>
        <source>There is no mapper script &quot;%1&quot;. Install the mapper folder beside the program.</source>
        <translation>找不到 Mapper 脚本“%1”。请将 mapper 文件夹放到程序所在的文件夹中。</translation>
    </message>
    <message>
        <source>The file cannot be opened.</source>
        <translation>无法打开文件。</translation>
    </message>
    <message>
        <source>The file is too short.</source>
        <translation>文件过短。</translation>
    </message>
    <message>
        <source>Stopped while the chip was being erased.</source>
        <translation>在擦除芯片时停止。</translation>
    </message>
    <message>
        <source>The chip was not seen to be erased.</source>
        <translation>未能确认芯片已擦除。</translation>
    </message>
    <message>
        <source>The mapper script is wrong; mend it, or install the program anew.</source>
        <translation>Mapper 脚本有误；请修正脚本，或重新安装程序。</translation>
    </message>
    <message>
        <source>Stopped, because the mapper script did nothing.</source>
        <translation>Mapper 脚本没有任何动作，因此停止。</translation>
    </message>
    <message>
        <source>Stopped before everything was read.</source>
        <translation>在读完全部内容之前停止。</translation>
    </message>
    <message>
        <source>The transfer failed.</source>
        <translation>传输失败。</translation>
    </message>
    <message>
        <source>Only %1 of %2 bytes were transferred.</source>
        <translation>共 %2 字节，只传输了 %1 字节。</translation>
    </message>
    <message>
        <source>Cannot write %1: fewer bytes were written than there are</source>
        <translation>无法保存 %1：未能写完全部字节</translation>
    </message>
    <message>
        <source>Cannot write %1: the system cannot hold this name in its 8-bit encoding.</source>
        <translation>无法保存 %1：系统的 8 位编码无法表示此文件名。</translation>
    </message>
    <message>
        <source>Cannot write %1: it is a folder.</source>
        <translation>无法保存 %1：这是一个文件夹。</translation>
    </message>
    <message>
        <source>Cannot write %1: the folder does not exist.</source>
        <translation>无法保存 %1：文件夹不存在。</translation>
    </message>
    <message>
        <source>Cannot write %1: it exists already.</source>
        <translation>无法保存 %1：文件已存在。</translation>
    </message>
    <message>
        <source>%1 does not hold what was written to it; the disk is not to be trusted.</source>
        <translation>%1 的内容与保存的数据不符；此磁盘不可靠。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is a folder.</source>
        <translation>无法读取 %1：这是一个文件夹。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is no ordinary file.</source>
        <translation>无法读取 %1：这不是普通文件。</translation>
    </message>
    <message>
        <source>Cannot read %1: it is too large for a cartridge.</source>
        <translation>无法读取 %1：文件过大，超出卡带容量。</translation>
    </message>
    <message>
        <source>Cannot read %1: %2.</source>
        <translation>无法读取 %1：%2。</translation>
    </message>
    <message>
        <source>Asked to stop before the write.</source>
        <translation>已按要求在写入之前停止。</translation>
    </message>
    <message>
        <source>Asked to stop before two reads were compared.</source>
        <translation>已按要求在比对两次读取的结果之前停止。</translation>
    </message>
    <message>
        <source>Two reads of the cartridge differ (%1), so there can be no backup of it. Clean the contacts, push the cartridge in again.</source>
        <translation>卡带两次读取的结果不同（%1），因此无法备份。请清洁触点，重新插好卡带。</translation>
    </message>
    <message>
        <source>All bytes of the save are equal. So reads an empty save, but also a wrong type or size of save memory and a bad contact, and then the write would destroy a save of which there is no backup.</source>
        <translation>存档的所有字节都相同。空存档是这样，存档类型或容量错误、接触不良时读出来也是这样；如果是后者，写入会破坏没有备份的存档。</translation>
    </message>
    <message>
        <source>The save chip holds 128 KiB, and the write would erase all of it.</source>
        <translation>存档芯片有 128 KiB，写入会将其全部擦除。</translation>
    </message>
    <message>
        <source>The flash chip says something else when it is asked again. Clean the contacts, push the cartridge in again.</source>
        <translation>再次查询时，Flash 芯片的回答与之前不同。请清洁触点，重新插好卡带。</translation>
    </message>
    <message>
        <source>Cannot make the folder %1 for the backup.</source>
        <translation>无法创建备份文件夹 %1。</translation>
    </message>
    <message>
        <source>It was written, but it could not be read back, so nobody knows whether it is right.</source>
        <translation>已写入，但无法回读，因此无法确定写入的内容是否正确。</translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written.</source>
        <translation>卡带中的内容与写入的数据不符。</translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written: %1 differ (%2).</source>
        <translation>卡带中的内容与写入的数据不符：%1（%2）。</translation>
    </message>
    <message>
        <source>0x%1: %2 instead of %3</source>
        <translation>0x%1：读到 %2，应为 %3</translation>
    </message>
</context>
</TS>
