<HTML><HEAD><TITLE>Success</TITLE><SCRIPT>
function returnpage() {
  document.location.href = "{{request.submit_button}}.asp;session_id=7f3a";
}
</SCRIPT></HEAD>
<BODY onload="setTimeout('returnpage()', Number('{{request.wait_time}}') * 300)"><P>Your settings have been successfully saved.</P>
<A href=javascript:returnpage()>Continue</A></BODY></HTML>
