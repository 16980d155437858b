<!DOCTYPE html>
<html>
<head><title>FRITZ!Box</title>
<script src="/js/login.js"></script>
<script>
var g_challenge = "1a2b3c4d";
function onSubmit() {
  var word = document.getElementById("uiPass").value;
  document.getElementById("uiResp").value = g_challenge + "-" + hashOf(g_challenge + "-" + word);
  document.getElementById("uiPass").value = "";
  document.getElementById("uiPass").disabled = true;
  return true;
}
</script>
</head>
<body>
<form method="POST" action="/login.lua" id="uiMainForm" onsubmit="return onSubmit()">
<p>Please log in with your FRITZ!Box password.</p>
<label for="uiPass">FRITZ!Box Password</label>
<input type="password" tabindex="2" id="uiPass" name="uiPass">
<div id="btn_form_foot">
<input type="hidden" name="response" id="uiResp" value="">
<input type="hidden" name="page" value="/home/home.lua">
<div id="forgot_pass"><a href="/vergessen.lua">Forgot your password?</a></div>
<button type="submit" tabindex="3" id="uiSubmitLogin">Log In</button>
</div>
</form>
</body>
</html>
