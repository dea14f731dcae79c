' Help topics by name: every member, late-bound. The help file has no viewer, so that nothing is shown.
Option Explicit

Dim help
Set help = CreateObject("ZEQUtility2.CWinHelp")
Equal "a new object has no owner", help.hwnd, 0
Equal "a new object has no default topic", help.DefaultTopic, ""
Equal "a new object knows no topic", help.TopicID("Intro"), 0
Equal "a new object knows no form", help.FormTopicName("Main", ""), ""

help.Create Scratch & "\Guide.txt", 5
Equal "the help file is kept", help.HelpFile, Scratch & "\Guide.txt"
Equal "the owner is kept", help.hwnd, 5
help.Create Scratch & "\Other.txt"
Equal "the owner is none by default", help.hwnd, 0
help.hwnd = 7
Equal "the owner can be set", help.hwnd, 7
help.HelpFile = Scratch & "\Guide.txt"
Equal "the help file can be set", help.HelpFile, Scratch & "\Guide.txt"

help.TopicID("Intro") = 42
Equal "a topic's number", help.TopicID("INTRO"), 42
OfType "numbers are long", help.TopicID("Intro"), "Long"
help.TopicID("intro") = -1
Equal "a topic's number is replaced", help.TopicID("Intro"), -1
help.FormTopicName("Main", "   ") = "Intro"
Equal "a blank context is the form itself", help.FormTopicName("MAIN", ""), "Intro"
help.FormTopicName("Main", " Print ") = "Printing"
Equal "a context within a form", help.FormTopicName("Main", "print"), "Printing"
help.DefaultTopic = "Start"
Equal "the default topic is kept", help.DefaultTopic, "Start"

help.ShowTopic "Intro"
help.ShowTopic "", "Main"
help.ShowTopic "", "Main", "Print"
help.ShowTopicID 42
help.ShowHelpFileTopic Scratch & "\Other.txt"
help.ShowHelpFileTopic Scratch & "\Other.txt", 42
help.ShowContents
help.ShowIndex
help.ShowFind
help.ShowKeyword "printing"
help.LocateHelp
help.Hide
Equal "showing changes nothing", help.HelpFile, Scratch & "\Guide.txt"

help.ClearTopics
Equal "topics are forgotten", help.TopicID("Intro"), 0
Equal "forms are not", help.FormTopicName("Main", ""), "Intro"
help.ClearFormTopicNames
Equal "forms are forgotten", help.FormTopicName("Main", ""), ""
