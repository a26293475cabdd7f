' Calls the front end's services late bound, as a script does, and writes what it is told to the file named by the first
' argument: results, and of failures the number, source and description.
Option Explicit
Dim addIn, answers, workbook, mole, mass, kind, derivative, conversion, rank, extensive, overall
Set addIn = CreateObject("Quorvane.Excel")
Set answers = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(0), True)
Set workbook = CreateObject("Scripting.Dictionary") ' any object can be a workbook
On Error Resume Next

Sub Tell(what, result)
    If Err.Number = 0 Then
        answers.WriteLine what & ": " & result
    Else
        answers.WriteLine what & ": " & Hex(Err.Number) & ", " & Err.Source & ", " & Err.Description
    End If
    Err.Clear
End Sub

Dim result
result = TypeName(addIn.PackageNames(workbook))
Tell "no packages", result
result = addIn.EditWorkbookPP(workbook, "Gas")
Tell "editing nothing", result
addIn.DeleteWorkbookPP workbook, "Gas"
Tell "deleting nothing", "done"
addIn.CloseWorkbook workbook
Tell "closing", "done"
result = addIn.CompoundNames(workbook, "Gas")
Tell "compounds", result
result = addIn.GetPhaseType(workbook, "Gas", "Vapor")
Tell "phase type", result
result = addIn.CheckSinglePhaseProperty(workbook, "Gas", "enthalpy", "Vapor")
Tell "check", result
result = addIn.CheckTwoPhaseProperty(workbook, "Gas", "kvalue", "Vapor", "Liquid")
Tell "two-phase check", result
result = addIn.PhaseEquilibriumConditionNames(Nothing, "Gas")
Tell "nothing for a workbook", result
result = addIn.ValueFromRange(workbook)
Tell "range", result
result = addIn.GetPackageInfo("Gas")
Tell "information", result
addIn.GetPropInfo "enthalpy", mole, mass, kind, derivative, conversion, rank, extensive, overall
Tell "property", mole & " " & mass & " " & kind & " " & derivative & " " & conversion & " " & rank & " " & extensive & " " & overall
addIn.GetPropInfo "colour", mole, mass, kind, derivative, conversion, rank, extensive, overall
Tell "unknown property", mole
answers.Close
