"""What the reference is made of: headers, documents, and what describes itself."""
