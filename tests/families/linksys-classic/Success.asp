<HTML><HEAD><TITLE>Success</TITLE>
<SCRIPT language=JavaScript>
function to_page() {
  window.location.replace("{{request.submit_button}}.asp");
}
</SCRIPT></HEAD>
<BODY><FORM><P>Settings are successful.</P>
<INPUT type=button name=btaction value="Continue" onClick=to_page()></FORM></BODY></HTML>
