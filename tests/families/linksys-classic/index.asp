<HTML><HEAD><TITLE>Setup</TITLE></HEAD><BODY><A href="Forward.asp">Applications &amp; Gaming</A></BODY></HTML>
