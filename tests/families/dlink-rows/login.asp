<html>
<head>
<title>D-LINK SYSTEMS, INC. | WIRELESS ROUTER | LOGIN</title>
<script>
function check() {
  var form = document.getElementById("form1");
  form.username.value = btoa(document.getElementById("login_n").value);
  form.password.value = btoa(document.getElementById("log_pass").value);
  form.submit();
}
function key(event) {
  if (event.keyCode === 13) {
    check();
  }
}
</script>
</head>
<body onkeypress="key(event)">
<form name="form1" id="form1" action="login.ccp" method="post">
<input type="hidden" id="html_response_page" name="html_response_page" value="login.asp">
<input type="hidden" id="username" name="username">
<input type="hidden" id="password" name="password">
<table>
<tr><td>User Name :</td><td><input type="text" id="login_n" value="Admin" disabled></td></tr>
<tr><td>Password :</td><td><input type="password" id="log_pass" onfocus="select()">
<input type="button" name="login" id="login" value="" onclick="check()"></td></tr>
</table>
</form>
<script>document.getElementById("login").value = "Log In";</script>
</body>
</html>
