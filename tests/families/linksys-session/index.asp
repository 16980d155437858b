<HTML><HEAD><TITLE>Basic Setup</TITLE><SCRIPT src="menu.js"></SCRIPT></HEAD>
<BODY><SCRIPT>draw_menu("index.asp")</SCRIPT><FORM name=setup method=post action=apply.cgi></FORM></BODY></HTML>
