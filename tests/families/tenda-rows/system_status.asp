<html>
<head><title>System Status</title></head>
<body><table><tr><td>Connection Status</td><td>Connected</td></tr></table></body>
</html>
