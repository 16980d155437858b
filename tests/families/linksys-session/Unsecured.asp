<HTML><HEAD><TITLE>Session</TITLE></HEAD><BODY>The session has ended. <A href="/">Log in again</A></BODY></HTML>
