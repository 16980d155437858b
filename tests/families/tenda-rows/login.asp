<html>
<head>
<title>Tenda 11N Wireless Router Login Screen</title>
<script>
function init() {
  if (location.href !== top.location.href) {
    top.location.href = "login.asp";
  }
  document.Login.Password.focus();
}
function preSubmit(form) {
  form.checkEn.value = form.nocheck.checked ? 1 : 0;
  if (form.Password.value === "") {
    alert("Password can not be empty!");
    return false;
  }
  form.submit();
}
function enterDown(event, form) {
  if (event.keyCode === 13) {
    preSubmit(form);
  }
}
</script>
</head>
<body onload="init()">
<form name="Login" method="post" action="/LoginCheck">
<input type="hidden" name="Username" value="admin">
<input type="hidden" name="checkEn" value="0">
<table width="400" align="center">
<tr><td colspan="2">Login</td></tr>
<tr><td>&nbsp;</td><td><div id="message">&nbsp;</div></td></tr>
<tr><td align="right">Password:</td><td><input type="text" name="Password" maxlength="12" onkeydown="enterDown(event, document.Login)"> (Initial password: admin)</td><td style="display:none"><input type="text" name="invalid"></td></tr>
<tr><td>&nbsp;</td><td><input type="checkbox" name="nocheck"> No longer prompts</td></tr>
<tr><td colspan="2" align="center"><input type="button" value="Ok" class="button1" onclick="preSubmit(document.Login)"> <input type="reset" value="Cancel" class="button1"></td></tr>
</table>
</form>
</body>
</html>
