' Makes the Start menu of a device: one shortcut for every program that people know from Wine.
Set shell = CreateObject("WScript.Shell")

Sub MakeLink(name, target)
    Set link = shell.CreateShortcut("C:\windows\Start Menu\Programs\" & name & ".lnk")
    link.TargetPath = target
    link.Save
End Sub

MakeLink "Notepad", "C:\windows\notepad.exe"
MakeLink "Registry", "C:\windows\regedit.exe"
MakeLink "Mines", "C:\windows\system32\winemine.exe"
MakeLink "Vantor", "C:\Program Files\Vantor\vantor.exe"
