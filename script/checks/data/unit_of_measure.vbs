' Asks the add-in for units by name, as any automation client would, and writes the answers to the file named by the
' first argument.
Option Explicit
Dim addIn, answers
Set addIn = CreateObject("Quorvane.Excel")
Set answers = CreateObject("Scripting.FileSystemObject").CreateTextFile(WScript.Arguments(0), True)
answers.WriteLine "enthalpy: " & addIn.CapeOpenUnitOfMeasure("enthalpy")
answers.WriteLine "enthalpy by mass: " & addIn.CapeOpenUnitOfMeasure("enthalpy", "mass")
answers.WriteLine "nonsense: " & addIn.CapeOpenUnitOfMeasure("nonsense")
answers.Close
