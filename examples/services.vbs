' What a front end learns of properties: prints name, units and kind of each property that is named as an argument.
'   cscript //nologo services.vbs RESULT.txt enthalpy density fugacity.Dtemperature
' The first argument names the file that is written.
Option Explicit

Dim services, answers, i, mole, mass, kind, derivative, conversion, rank, extensive, overall
Set services = CreateObject("Quorvane.Excel")
Set answers = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(0), True)

For i = 1 To WScript.Arguments.Count - 1
    On Error Resume Next
    services.GetPropInfo WScript.Arguments(i), mole, mass, kind, derivative, conversion, rank, extensive, overall
    If Err.Number = 0 Then
        answers.WriteLine WScript.Arguments(i) & ": " & mole & " or " & mass & ", " & shape(rank)
    Else
        answers.WriteLine WScript.Arguments(i) & ": " & Err.Description
    End If
    On Error GoTo 0
Next
answers.Close

Function shape(rank)
    Select Case rank
        Case 0: shape = "one value"
        Case 1: shape = "one value for each compound"
        Case Else: shape = "one value for each pair of compounds"
    End Select
End Function
