// Help topics by name. The help file has no viewer, so that nothing is shown.

var help = new ActiveXObject("ZEQUtility2.CWinHelp");
help.Create(scratch() + "\\Guide.txt", 5);
equal("the help file is kept", help.HelpFile, scratch() + "\\Guide.txt");
equal("the owner is kept", help.hwnd, 5);
help.hwnd = 0;
equal("the owner can be set", help.hwnd, 0);
help.HelpFile = scratch() + "\\Other.txt";
equal("the help file can be set", help.HelpFile, scratch() + "\\Other.txt");
help.TopicID("Intro") = 42;
equal("a topic's number", help.TopicID("INTRO"), 42);
help.FormTopicName("Main", "Print") = "Intro";
equal("a context within a form", help.FormTopicName("main", " print "), "Intro");
help.DefaultTopic = "Start";
equal("the default topic is kept", help.DefaultTopic, "Start");
help.ShowTopic("", "Main", "Print");
help.ShowTopicID(42);
help.ShowHelpFileTopic(scratch() + "\\Other.txt", 1);
help.ShowContents();
help.ShowIndex();
help.ShowFind();
help.ShowKeyword("printing");
help.LocateHelp();
help.Hide();
help.ClearTopics();
equal("topics are forgotten", help.TopicID("Intro"), 0);
help.ClearFormTopicNames();
equal("forms are forgotten", help.FormTopicName("Main", "Print"), "");
