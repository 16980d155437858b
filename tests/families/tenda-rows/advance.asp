<html>
<head><title>Wireless Router</title></head>
<body>
<table width="976"><tr>
<td><a href="system_status.asp" target="mainFrame">Advanced Settings</a></td>
<td><a href="nat_virtualportseg.asp" target="mainFrame">Virtual Server</a></td>
</tr><tr><td colspan="2"><iframe width="960" height="500" name="mainFrame" id="mainFrame" src="system_status.asp" frameborder="0"></iframe></td></tr></table>
</body>
</html>
