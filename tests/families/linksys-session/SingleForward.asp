<HTML><HEAD><TITLE>Single Port Forwarding</TITLE><SCRIPT src="menu.js"></SCRIPT></HEAD>
<BODY><SCRIPT>draw_menu("SingleForward.asp")</SCRIPT><FORM name=singleForward method=post action=apply.cgi></FORM></BODY></HTML>
