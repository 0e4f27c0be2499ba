<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>Backup</name>
    <message>
        <source>%1; already there</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read: its size or kind is not known</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read: after a ROM of this size an MMM01 shows its save in pieces until it is taken out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read: no table knows this game</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read: the cartridge was changed meanwhile</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not read twice: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The first read is in %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not written: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ROM, %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge has no ROM that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save, %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge has no save that can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No cartridge was recognised. Push it in again, clean its contacts, or choose the settings and use Dump.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The save was not read.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Console</name>
    <message>
        <source>Log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What has happened; the newest line is the last</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>CornerActions</name>
    <message>
        <source>A reader was plugged in, so the demo reader is off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The demo reader is on: no real cartridge is read or written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The demo reader is off.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checking the ROM file:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check a ROM file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ROM files (*.gb *.gbc *.gba *.sgb)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back up the cartridge into...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Backing up the cartridge into the folder:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The backup folder is %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Differences</name>
    <message>
        <source>%1 and %2 more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>bank %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>banks %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>4 KiB block %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>4 KiB blocks %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>64 KiB block %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>64 KiB blocks %1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 bytes, at %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 bytes, from %3 to %4</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DriveAdvice</name>
    <message>
        <source>Is the folder that GBDRIVER_DRIVES names there, and the reader mounted on it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unset GBDRIVER_DRIVES to look at every mounted removable drive.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Is the reader plugged in and mounted? Only mounted drives are seen: &quot;lsblk&quot;
shows both, and &quot;udisksctl mount -b /dev/sdX1&quot; mounts one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Does the system not call it removable, declare its folder:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>May you write there? A mount made by root needs the option uid=.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GBDRIVER_DRIVES is set: only the drives that it declares are looked at.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Is the reader plugged in, and does the Explorer show it as a removable drive?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>If it shows no drive letter, give it one in the Disk Management.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DriveFindings</name>
    <message>
        <source>it has no identity file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>its identity could not be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>taken as the reader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>taken, though %1: is it a reader?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>also a reader, but %1: comes first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>would pass as a reader, though %1, but %2: comes first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, label &quot;%2&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no label can be read: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>identity: &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>missing (the first command makes it)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>drive of unknown type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no drive any more</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>removable drive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fixed disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>network drive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>CD or DVD drive</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RAM disk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>type %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not taken: a reader is a removable drive, this is not</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not taken: its K-DRIVER.DMP ends before the identity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>opens</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>missing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fails: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FamicomThread</name>
    <message>
        <source>Read file :</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> Bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>script error: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>script error: %1 (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can not found device.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not enough memory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open File error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read File error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save file error.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FirmwareUpdateTab</name>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How far the update has come</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update Firmware</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First turn off anti-virus software.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next press &quot;Update Firmware&quot; to update firmware.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source><byte value="xd"/>
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Starting update firmware , pelase wait...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was sent to the reader: this program transfers no firmware.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>GuardedJob</name>
    <message>
        <source>Reading</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keeping a backup</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Writing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Comparing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Erasing; Cancel ends the wait</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader does not answer. Unplug it, or close the window.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader has not answered for %1 seconds.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unplug it to end the job, or close the window twice to leave the job behind; it only reads.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge is being written. If no answer ever comes, unplug the reader: that ends the job, and the cartridge is then partly written.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Judgement</name>
    <message>
        <source>%1 of %2 bytes were written</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 bytes arrived</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file could not be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bytes, read back and equal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bytes; nothing was read back and compared</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file, read back and equal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>only the first %1 of %2 bytes of the file; nothing was read back and compared</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>verified: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>consistent: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unverified: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>unstable: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>suspicious: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>written: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>incomplete: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>refused: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stopped: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge is of another system than the settings say.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge bus reaches 32 MiB (256 Mb); no more of a GBA ROM can be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No flash chip answers and every byte is FF: so reads an empty slot, and nobody would notice that nothing is written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&quot;Read again and compare&quot; in the menu at the top right shows whether two reads are equal.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do not use this file. Clean the contacts, push the cartridge in again and read it once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do not trust this file. See that the settings are right (Info selects them), clean the contacts, push the cartridge in again and read it once more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Leave the reader plugged in, wait until the other program has ended, and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take that drive out. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug the reader in again. &quot;Why is no reader found?&quot; in the menu at the top right tells more.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check the plug of the reader and the contacts of the cartridge, and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What the cartridge held before is in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chip does not say how large it is; this is what the mapper shows of it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To put it back, write that file with FLASH.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To put it back, write that file with Write RAM.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press Info to select what the cartridge says of itself.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose another name or folder, or make room.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Push the cartridge in again, or tick &quot;Verify the data after writing&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the mapper of the board, whatever the header says.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>See that the settings are right and that the contacts are clean.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose 128 K.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make room in the backup folder, or see that you may write there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 bytes, SHA-1 %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge that Info has seen has %1 bytes of save memory, and only %2 of them were moved. Choose the larger size.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file that was there before is in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left by a program that was ended: %1
&quot;gbdriver-cli tidy&quot; removes such files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>If you know better, turn &quot;Guard writes&quot; off in the menu at the top right; then no backup is made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What was read of the cartridge is in %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainTab</name>
    <message>
        <source>Read ROM to...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC Rom (*.gb *.gbc)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GBA Rom (*.gba)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading data from ROM to file:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read save to...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC save (*.sav)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GBA save (*.sav)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading data from save to file:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get ROM File.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC ROM (*.gb *.gbc)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GBA ROM (*.gba)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Writing rom to cartridge from file:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Get Save File.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Writing save to cartridge from file:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Info</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show cartridge information!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump ROM from cartridge!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flash ROM to a writeable cartridge!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read SRAM from cartridge!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write SRAM to cartridge!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How far the job that runs has come</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Velora Driver Series for GB/GBC/GBA 3.0 started.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Support all functions, need &lt;span style=&quot;color: #ffcc00;&quot;&gt;QDX_PCB02_FW303&lt;/span&gt; firmware.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To dump GB/GBC cartridge,please switch power to 5V.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To dump GBA cartridge,please switch power to 3.3V.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Part of homebrew GB/GBC flash cart need 3.3V power.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source><byte value="xd"/>
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>gba.nut</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>/mapper/</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flash chip is 8bit width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flash chip is 16bit width</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flash chip size is :</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>KB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&gt;Operation failure.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&gt;Success!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Initialize device error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not exists script file :</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can not found dump device.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--Device information--</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Driver label: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Device firmware: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read ROM error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--GB/GBC Cartridge information--</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cart type: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ROM Size: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RAM Size: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Can not auto detect cartridge information.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Maybe no insert cart or it&apos;s a black cart.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Also try:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 1.Turn off anti-virus software.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 2.Damaged or Dirty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 3.Switch correct volte on dump board.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 4.Try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Detect GBA cartridge, but can not detect detail.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>--GBA Cartridge information--</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Year: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Publisher: </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>the reader did not take the command</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>only %1 of %2 bytes arrived</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the reader did not answer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>(what the script prints is not shown any more)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the script suspended itself</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 suspended itself</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the script has no function %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start dump rom...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump rom finish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start dump save...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump save finish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start write save...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write save finish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Erase flash chip finish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the reader did not answer while the chip was being erased</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the chip was not erased after %1 seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start erase flash chip...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the reader did not take the command that erases the save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start flash ROM...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flash ROM finish.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dump core script error
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unknow operate!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the script needs more than %1 MiB of memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the script is nested too deeply</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the script did nothing with the cartridge for %1 seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the job was left</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ReaderCorner</name>
    <message>
        <source>Demo reader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No reader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nameless reader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This reader and its cartridge exist only in this program. Opens the menu of all actions.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No reader has been found. Opens the menu of all actions.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader that jobs use, by its drive. Opens the menu of all actions.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asks the job that runs to stop where nothing is left half done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Info</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Looks for the reader, says what it and its cartridge are, and chooses the settings that fit.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dump</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copies the ROM of the cartridge into a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>FLASH</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Erases a rewritable cartridge and writes a ROM file into it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read RAM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copies the save memory of the cartridge into a file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write RAM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Writes a save file into the cartridge, over the save that is there.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back up this cartridge…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copies ROM and save memory into a folder, with a report about both.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read again and compare</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reads what was dumped last once more and says whether both reads are equal.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check a ROM file…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Says what a ROM file is worth. No reader is needed for it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Why is no reader found?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Looks at every drive and says in the log why it is or is not taken as the reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Guard writes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keeps what is in the cartridge in the backup folder before anything is written over it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read twice what no table knows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reads a ROM a second time if it is not among the known dumps, and compares. Takes twice as long.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the backup folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shows the folder in which old saves, ROMs and files are kept.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the log</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Puts the text of the whole log on the clipboard.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use the demo reader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tries everything on a reader and a cartridge that exist only in this program. Not beside a real reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reader: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SYS TYPE:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Verify the data after writing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What kind of cartridge is in the slot</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC: the mapper; GBA: the size of the ROM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC: the size of the ROM; GBA: the kind of save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The size of the save memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reads back what was written and compares it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>MBC TYPE:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ROM SIZE:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RAM SIZE:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RAM TYPE:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TabAbout</name>
    <message>
        <source>* Squirrel 3.1 stable, Copyright (c) 2003-2016
  Alberto Demichelis

* Qt 5.7, Copyright (c) 2016-2020
  The Qt Company Ltd.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This program and device, called set, enables to:
- make game backups from owned cartridges and play them on PC,
- transfer game saves between cartridge and PC,
- test written by yourself games directly on console 
  (rewritable cartridge required).
</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Velora Cartridge Driver/Dumper</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB/GBC/GBA Cartridge Dumper</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Web site: </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Email: </source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>TabDialog</name>
    <message>
        <source>%1 %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file that was there before is in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB Driver 3.0 build - </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge is being written. The window stays until that has ended.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A job is running and has been asked to stop. The window closes when it has ended.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The job has not ended yet. Close the window again to leave it behind; it only reads.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The window stays open, for you to read this. Close it again.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>UpdateThread</name>
    <message>
        <source>Update firmware successful.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Words</name>
    <message>
        <source>The save of an MBC6 cannot be read or written: no script knows this mapper.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The save of an MBC7 cannot be read or written: it lies in a serial EEPROM that moves one bit at a time, and the reader has no command for that.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The save of a TAMA5 cannot be read or written: it lies behind registers, and the bytes of another save would destroy it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The header names another mapper than was chosen; what is meant for one mapper can destroy what another keeps.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The game table names another kind of save memory than was chosen; the wrong commands can destroy what a read with them does not show.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge names another size of its save memory than was chosen; the write would leave out a part of it or go over another.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning: all bytes of %1 are equal. So looks an empty save, but also one that was read with bad contacts or the wrong settings.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader has no command that writes a GBA ROM.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cartridges with this mapper have no flash chip that can be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file has %1 bytes; with this mapper a flash chip takes %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The last bank of the file has %1 bytes; %2 are the fewest that the reader can program. Pad the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file has %1 bytes, the flash chip %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chip is erased as a whole, and a backup of %1 bytes may be only a part of it: up to %2 can be in it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chip has %2 bytes, and what is read of it repeats its first %1: so it reads behind another mapper than the one that was chosen, and a backup would be a part of it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>their lengths: %1 and %2 bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>it has become shorter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>known dumps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge was not touched.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge was only looked at.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge was only read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge was read, which also writes to its bus.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was written; the cartridge is as it was.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The write was not begun; the cartridge was read, which also writes to its bus.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge may be partly written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What the chip held may be lost.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge was written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there are no bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all bytes are equal: an empty slot or no contact</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>there is no boot logo in the header</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the header&apos;s checksum is wrong</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the checksum over the whole ROM is wrong</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>from byte %1 no memory answers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the header speaks of %1 bytes, these are %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not a known dump</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>such a ROM has no checksum over all of its bytes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nobody saw it read twice</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>read only once</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reads differ in %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>logo, header checksum and checksum over the whole ROM are right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the checksum is a sum and does not see swapped banks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 equal reads</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>all bytes are equal: an empty save, no contact, or the wrong kind of save memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>everything from byte %1 repeats what is before: two copies, or a smaller save memory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1; %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No reader was found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The reader does not answer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another program uses the reader.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The drive that was taken for the reader is none.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is not enough memory.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is no mapper script &quot;%1&quot;. Install the mapper folder beside the program.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file cannot be opened.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The file is too short.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopped while the chip was being erased.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The chip was not seen to be erased.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The mapper script is wrong; mend it, or install the program anew.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopped, because the mapper script did nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stopped before everything was read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The transfer failed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Only %1 of %2 bytes were transferred.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: fewer bytes were written than there are</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: the system cannot hold this name in its 8-bit encoding.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: it is a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: the folder does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write %1: it exists already.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 does not hold what was written to it; the disk is not to be trusted.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read %1: it is a folder.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read %1: it is no ordinary file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read %1: it is too large for a cartridge.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot read %1: %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asked to stop before the write.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Asked to stop before two reads were compared.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Two reads of the cartridge differ (%1), so there can be no backup of it. Clean the contacts, push the cartridge in again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All bytes of the save are equal. So reads an empty save, but also a wrong type or size of save memory and a bad contact, and then the write would destroy a save of which there is no backup.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The save chip holds 128 KiB, and the write would erase all of it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The flash chip says something else when it is asked again. Clean the contacts, push the cartridge in again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot make the folder %1 for the backup.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>It was written, but it could not be read back, so nobody knows whether it is right.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The cartridge does not hold what was written: %1 differ (%2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>0x%1: %2 instead of %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
