<html>
<head>
<title>TRENDNET | TEW-810DR | Login</title>
<script>
var submit_button_flag = true;
function value(id, text) {
  if (text !== undefined) {
    document.getElementById(id).value = text;
  }
  return document.getElementById(id).value;
}
function check() {
  if (submit_button_flag) {
    submit_button_flag = false;
    value("username", btoa(value("login_n")));
    value("password", btoa(value("log_pass")));
    document.getElementById("form1").submit();
  }
  return true;
}
document.onkeyup = function (event) {
  if (event.keyCode === 13) {
    check();
  }
};
</script>
</head>
<body onload="document.form1.log_pass.focus();">
<form name="form1" id="form1" action="login.ccp" method="post">
<input type="hidden" id="html_response_page" name="html_response_page" value="login.asp">
<input type="hidden" id="username" name="username">
<input type="hidden" id="password" name="password">
<table align="center">
<tr><td>User Name :</td><td><input type="text" id="login_n" name="login_n" value="admin"></td></tr>
<tr><td>Password :</td><td><input type="password" id="log_pass" name="log_pass" onfocus="select();"><input type="text" id="log_pass_t" style="display:none">
<input type="checkbox"> Display</td></tr>
<tr><td>Language :</td><td><select id="lang_select"><option value="1" selected>English</option><option value="2">Espa&ntilde;ol</option></select></td></tr>
</table>
</form>
<input type="button" name="login" id="login" value="" onclick="check()">
<script>value("login", "Login");</script>
</body>
</html>
